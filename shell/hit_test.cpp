#include "shell/hit_test.h"

namespace vantro {

namespace {

constexpr int kEdge = 8;
constexpr int kTopEdge = 3;  // shallower than the other edges: the window buttons begin right below it
constexpr int kTitleBarBottom = 30;

struct Query {
  int x;
  int y;
  int width;
  int height;

  constexpr bool OnLeft() const { return x < kEdge; }
  constexpr bool OnRight() const { return x >= width - kEdge; }
  constexpr bool OnBottom() const { return y >= height - kEdge; }
  // A zone of the title bar, both ends included.
  constexpr bool Between(int first, int last) const { return first <= x && x <= last; }
};

struct Zone {
  HitCode code;
  bool (*contains)(const Query&);
};

// The first zone that holds the point decides. The zones on the left are fixed numbers, those on the right follow the
// width. The icon and the title are client area, so they don't drag the window; the volume control's place is caption,
// and only that control's own hit test keeps it usable.
constexpr Zone kZones[] = {
    {HitCode::kTopLeft, [](const Query& q) { return q.OnLeft() && q.y < kEdge; }},
    {HitCode::kTopRight, [](const Query& q) { return q.OnRight() && q.y < kEdge; }},
    {HitCode::kBottomLeft, [](const Query& q) { return q.OnLeft() && q.OnBottom(); }},
    {HitCode::kBottomRight, [](const Query& q) { return q.OnRight() && q.OnBottom(); }},
    {HitCode::kLeft, [](const Query& q) { return q.OnLeft(); }},
    {HitCode::kRight, [](const Query& q) { return q.OnRight(); }},
    {HitCode::kTop, [](const Query& q) { return q.y < kTopEdge; }},
    {HitCode::kBottom, [](const Query& q) { return q.OnBottom(); }},
    {HitCode::kClient, [](const Query& q) { return q.y > kTitleBarBottom; }},
    {HitCode::kClient, [](const Query& q) { return q.Between(q.width - 135, q.width); }},        // window buttons
    {HitCode::kClient, [](const Query& q) { return q.x <= 82; }},                                // icon and title
    {HitCode::kClient, [](const Query& q) { return q.Between(90, 125); }},                       // File
    {HitCode::kClient, [](const Query& q) { return q.Between(135, 170); }},                      // Help
    {HitCode::kClient, [](const Query& q) { return q.Between(q.width - 295, q.width - 145); }},  // search box
};

}  // namespace

HitCode HitTest(Point point, Size clientArea) {
  const Query query{point.x, point.y, clientArea.width, clientArea.height};
  for (const Zone& zone : kZones) {
    if (zone.contains(query)) return zone.code;
  }
  return HitCode::kCaption;
}

}  // namespace vantro
