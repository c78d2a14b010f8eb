#include "shell/search_box.h"

#include <memory>
#include <string>

#include "common/log.h"
#include "common/text.h"
#include "shell/shell_ids.h"

namespace vantro {

namespace {

constexpr int kSearchTextCapacity = 1024;  // wide characters, the terminator included

}  // namespace

SearchBox::SearchBox(const HWND& mainWindow, const TitleBar& titleBar,
                     const std::unique_ptr<MethodChannelHandler>& handler)
    : hwnd_(mainWindow), titleBar_(titleBar), methodChannelHandler_(handler) {}

void SearchBox::StopDebounceTimer() {
  if (!searchDebounceTimer_) return;
  KillTimer(hwnd_, searchDebounceTimer_);
  searchDebounceTimer_ = 0;
}

void SearchBox::HandleSearchInput() {
  if (!Window()) return;
  StopDebounceTimer();
  searchDebounceTimer_ = SetTimer(hwnd_, kSearchDebounceTimerId, kSearchDebounceMs, nullptr);
  LOG_DEBUG("HandleSearchInput: Debounce timer set (500ms)");
}

void SearchBox::OnSearchDebounceTimer() {
  KillTimer(hwnd_, kSearchDebounceTimerId);
  searchDebounceTimer_ = 0;
  if (!Window()) return;
  wchar_t text[kSearchTextCapacity];
  const int length = GetWindowTextW(Window(), text, kSearchTextCapacity);
  if (length < 0) return;
  const std::string query = NarrowFromWide({text, static_cast<size_t>(length)});
  LOG_DEBUG("WM_TIMER: Search debounce complete, query: '%s'", query.c_str());
  if (!methodChannelHandler_ || !methodChannelHandler_->methodChannel_) return;
  // For a cleared box the event has no argument, which the interface distinguishes from an empty text.
  methodChannelHandler_->SendChannelEvent("search_query_changed", query);
  LOG_DEBUG("WM_TIMER: Sent search query to Flutter - Flutter will handle focus");
}

}  // namespace vantro
