// The search box: waits for the typing to pause, then hands the text to the interface.
#include <windows.h>

#include <memory>
#include <string>

#include "common/log.h"
#include "common/text.h"
#include "shell/shell_ids.h"
#include "shell/vantro_window.h"

namespace vantro {

namespace {

constexpr int kSearchTextCapacity = 1024;  // wide characters, the terminator included

}  // namespace

void VantroWindow::HandleSearchInput() {
  if (!titleBar_.Controls().searchBox_) return;
  if (searchDebounceTimer_) {
    KillTimer(hwnd_, kSearchDebounceTimerId);
    searchDebounceTimer_ = 0;
  }
  searchDebounceTimer_ = SetTimer(hwnd_, kSearchDebounceTimerId, kSearchDebounceMs, nullptr);
  LOG_DEBUG("HandleSearchInput: Debounce timer set (500ms)");
}

void VantroWindow::OnSearchDebounceTimer() {
  KillTimer(hwnd_, kSearchDebounceTimerId);
  searchDebounceTimer_ = 0;
  if (!titleBar_.Controls().searchBox_) return;
  wchar_t text[kSearchTextCapacity];
  const int length = GetWindowTextW(titleBar_.Controls().searchBox_, text, kSearchTextCapacity);
  if (length < 0) return;
  const std::string query = NarrowFromWide({text, static_cast<size_t>(length)});
  LOG_DEBUG("WM_TIMER: Search debounce complete, query: '%s'", query.c_str());
  if (!methodChannelHandler_ || !methodChannelHandler_->methodChannel_) return;
  // A cleared box sends no argument at all, which the interface tells from an empty query.
  auto argument = query.empty() ? nullptr : std::make_unique<EncodableValue>(query);
  methodChannelHandler_->methodChannel_->InvokeMethod("search_query_changed", std::move(argument));
  LOG_DEBUG("WM_TIMER: Sent search query to Flutter - Flutter will handle focus");
}

}  // namespace vantro
