#include "tests/unit/shell/window_fixture.h"

#include <algorithm>
#include <iterator>

#include "shell/window_manager.h"

namespace vantro::test {

namespace {

std::vector<SeenMessage> Only(const std::vector<SeenMessage>& all, UINT message) {
  std::vector<SeenMessage> some;
  std::copy_if(all.begin(), all.end(), std::back_inserter(some),
               [message](const SeenMessage& seen) { return seen.message == message; });
  return some;
}

}  // namespace

bool operator==(const RECT& a, const RECT& b) { return EqualRect(&a, &b); }

RECT WindowRectOf(HWND window) {
  RECT rect{};
  GetWindowRect(window, &rect);
  return rect;
}

RECT ClientRectOnScreen(HWND window) {
  RECT rect{};
  GetClientRect(window, &rect);
  MapWindowPoints(window, HWND_DESKTOP, reinterpret_cast<POINT*>(&rect), 2);
  return rect;
}

WindowTest::WindowTest() {
  loopback_.SetViewObserver(OnViewMessage, this);
  loopback_.SetTopLevelObserver(OnOffered, this);
}

WindowTest::~WindowTest() {
  auto& registry = GetWindowRegistry();
  while (!registry.empty()) {
    // Removed from the list first, because the destructor searches the list for the window.
    std::unique_ptr<VantroWindow> window = std::move(registry.back());
    registry.pop_back();
    Destroy(std::move(window));
  }
  DrainQueue();
}

std::unique_ptr<VantroWindow> WindowTest::BringUp() {
  auto window = std::make_unique<VantroWindow>(GetModuleHandleA(nullptr));
  EXPECT_TRUE(window->Initialize());
  KeepWindowClass();
  return window;
}

VantroWindow& WindowTest::OpenWindow() {
  std::unique_ptr<VantroWindow> window = BringUp();
  ShowWindow(window->hwnd_, SW_SHOWNORMAL);
  UpdateWindow(window->hwnd_);
  VantroWindow& opened = *window;
  RegisterWindow(std::move(window));
  DrainQueue();
  Forget();
  return opened;
}

void WindowTest::Destroy(std::unique_ptr<VantroWindow> window) {
  KeepWindowClass();
  const HWND native = window->hwnd_;
  window.reset();
  if (IsWindow(native)) DestroyWindow(native);
}

std::vector<SeenMessage> WindowTest::ViewSaw(UINT message) const { return Only(viewMessages_, message); }
std::vector<SeenMessage> WindowTest::EngineOffered(UINT message) const { return Only(offeredMessages_, message); }

void WindowTest::Forget() {
  viewMessages_.clear();
  offeredMessages_.clear();
}

int32_t WindowTest::OnViewMessage(int32_t engine, HWND view, UINT message, WPARAM wParam, LPARAM lParam,
                                  LRESULT* result, void* self) {
  auto* const test = static_cast<WindowTest*>(self);
  test->viewMessages_.push_back({view, message, wParam});
  if (!test->viewAnswer_ || test->viewAnswer_->first != message) return 0;
  *result = test->viewAnswer_->second;
  return 1;
}

void WindowTest::OnOffered(int32_t engine, HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam, void* self) {
  static_cast<WindowTest*>(self)->offeredMessages_.push_back({hwnd, message, wParam});
}

}  // namespace vantro::test
