#include "shell/hit_test.h"

#include "shell/title_bar_places.h"

namespace vantro {

namespace {

constexpr int kEdge = 8;  // of the left, right and lower edge; the top edge is shallower

struct Query {
  int x;
  int y;
  int width;
  int height;

  constexpr bool OnLeft() const { return x < kEdge; }
  constexpr bool OnRight() const { return x >= width - kEdge; }
  constexpr bool OnBottom() const { return y >= height - kEdge; }
  // Whether x is in the columns from the first control to the last. The pixel to the right of the last control is
  // included.
  constexpr bool Between(const Rect& first, const Rect& last) const { return first.left <= x && x <= last.right; }
  constexpr bool At(const Rect& control) const { return Between(control, control); }
};

struct Zone {
  HitCode code;
  bool (*contains)(const Query&);
};

// The first zone that contains the point decides. The icon and the title are client area, so they do not drag the
// window. The volume control's place is caption; only that control's own hit test keeps it usable.
constexpr Zone kZones[] = {
    {HitCode::kTopLeft, [](const Query& q) { return q.OnLeft() && q.y < kEdge; }},
    {HitCode::kTopRight, [](const Query& q) { return q.OnRight() && q.y < kEdge; }},
    {HitCode::kBottomLeft, [](const Query& q) { return q.OnLeft() && q.OnBottom(); }},
    {HitCode::kBottomRight, [](const Query& q) { return q.OnRight() && q.OnBottom(); }},
    {HitCode::kLeft, [](const Query& q) { return q.OnLeft(); }},
    {HitCode::kRight, [](const Query& q) { return q.OnRight(); }},
    {HitCode::kTop, [](const Query& q) { return q.y < kTopEdge; }},
    {HitCode::kBottom, [](const Query& q) { return q.OnBottom(); }},
    {HitCode::kClient, [](const Query& q) { return q.y > TITLE_BAR_HEIGHT; }},
    {HitCode::kClient,
     [](const Query& q) { return q.Between(kMinimizeButtonPlace.In(q.width), kCloseButtonPlace.In(q.width)); }},
    {HitCode::kClient, [](const Query& q) { return q.x <= kTitlePlace.right; }},  // from the left edge, with the icon
    {HitCode::kClient, [](const Query& q) { return q.At(kFileButtonPlace); }},
    {HitCode::kClient, [](const Query& q) { return q.At(kHelpButtonPlace); }},
    {HitCode::kClient, [](const Query& q) { return q.At(kSearchBoxPlace.In(q.width)); }},
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
