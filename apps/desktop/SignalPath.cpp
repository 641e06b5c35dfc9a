#include "desktop/SignalPath.h"

#include <algorithm>
#include <set>
#include <vector>

#include <QPainter>

#include "desktop/FrameView.h"
#include "desktop/QtText.h"

namespace desktop {
namespace {

using Block = const FrameView*;
using Blocks = std::vector<Block>;

Blocks PartsOf(const FrameView& view) {
  Blocks parts;
  for (const QGroupBox* box : view.findChildren<QGroupBox*>(QString(), Qt::FindDirectChildrenOnly)) {
    if (box->isVisibleTo(&view)) parts.push_back(static_cast<Block>(box));  // there are no others
  }
  return parts;
}

bool HoldsOthers(const FrameView& view) { return !view.Captioned() && !PartsOf(view).empty(); }

bool Stacked(const FrameView& view) {
  return view.Model().arrangement == vc::Arrangement::Rows ||
         view.Model().arrangement == vc::Arrangement::Lanes;
}

// The one channel runs through these lanes in turn.
bool InTurn(const FrameView& view) {
  return view.Model().arrangement == vc::Arrangement::Lanes && view.Model().Channels() == 1;
}

// The blocks at which the signal comes into a part of the flow, or leaves it.
enum class Side { Entry, Exit };
Blocks BlocksAt(Side side, const FrameView& view) {
  if (!HoldsOthers(view)) return {&view};
  const Blocks parts = PartsOf(view);
  if (!Stacked(view) || InTurn(view)) {
    return BlocksAt(side, *(side == Side::Entry ? parts.front() : parts.back()));
  }
  Blocks all;
  for (const Block row : parts) std::ranges::copy(BlocksAt(side, *row), std::back_inserter(all));
  return all;
}

struct Step {
  Block from, to;
};

class Path {
 public:
  explicit Path(const FrameView& flow) : whole(flow) { Follow(flow); }
  void Draw(QPainter& painter) const;

 private:
  void Follow(const FrameView& view);
  void Join(const Blocks& exits, const Blocks& entries);
  void GoDown(const FrameView& view);
  QRect AreaOf(Block block) const;
  bool Faces(Block one, Block other) const;
  bool Leads(Block block) const;
  void DrawStep(QPainter& painter, const Step& step) const;
  void DrawTip(QPainter& painter, const QPointF& tip, const QPointF& direction) const;
  QRect Lanes() const;
  std::vector<double> LevelsOf(const Step& step) const;
  std::vector<QPolygonF> RoutesOf(const Step& step) const;
  QPolygonF BentRoute(const QRect& from, const QRect& to) const;

  const FrameView& whole;
  std::vector<Step> steps;
};

QRect Path::AreaOf(Block block) const {
  return block->Inside().translated(block->mapTo(&whole, QPoint(0, 0)));
}

bool Path::Faces(Block one, Block other) const {
  const QRect first = AreaOf(one), second = AreaOf(other);
  return first.top() < second.bottom() && second.top() < first.bottom();
}

bool Path::Leads(Block block) const {
  return std::ranges::any_of(
      steps, [block](const Step& step) { return step.from == block && step.to->isEnabled(); });
}

// Within one block the signal goes from each stage of processing to the one below it.
void Path::GoDown(const FrameView& view) {
  Block before = nullptr;
  for (const Block part : PartsOf(view)) {
    if (part->Model().InTheWay() == vc::Standing::Plain) continue;
    if (before != nullptr) steps.push_back({before, part});
    before = part;
  }
}

void Path::Follow(const FrameView& view) {
  if (!HoldsOthers(view)) return GoDown(view);
  Block before = nullptr;
  for (const Block part : PartsOf(view)) {
    const bool inFlow = view.Model().arrangement == vc::Arrangement::Flow;
    if (before != nullptr && inFlow) Join(BlocksAt(Side::Exit, *before), BlocksAt(Side::Entry, *part));
    if (before != nullptr && InTurn(view)) {
      steps.push_back({BlocksAt(Side::Exit, *before).front(), BlocksAt(Side::Entry, *part).front()});
    }
    Follow(*part);
    before = part;
  }
}

void Path::Join(const Blocks& exits, const Blocks& entries) {
  for (const Block from : exits) {
    for (const Block to : entries) {
      if (Faces(from, to)) steps.push_back({from, to});
    }
  }
}

// Where the lanes of the channels lie: beside all of the flow, or beside the blocks that have something else
// below them.
QRect Path::Lanes() const {
  for (const Block part : PartsOf(whole)) {
    const bool rows = HoldsOthers(*part) && part->Model().arrangement == vc::Arrangement::Rows;
    if (rows) return AreaOf(PartsOf(*part).front());
  }
  return whole.rect();
}

// The heights at which the channels go straight from one block to the next: all along in the middle of their
// lanes, where both blocks reach so far.
std::vector<double> Path::LevelsOf(const Step& step) const {
  const QRect from = AreaOf(step.from), to = AreaOf(step.to);
  const int channels = std::min(step.from->Model().Channels(), step.to->Model().Channels());
  const QRect lanes = Lanes();
  const bool ends = std::min(from.height(), to.height()) > lanes.height();  // both are beside all lanes
  if (channels < 2) {
    return {static_cast<double>((ends ? lanes : from.height() < to.height() ? from : to).center().y())};
  }
  const int line = LineHeight(whole);
  const int aside = (lanes.height() - line) / 4;  // on a whole pixel, where a line is sharp
  const double top = std::max(from.top(), to.top()), bottom = std::min(from.bottom(), to.bottom());
  const double inside = line / 2.0;
  return {std::max<double>(lanes.top() + aside, top + inside),
          std::min<double>(lanes.top() + lanes.height() - aside, bottom - inside)};
}

std::vector<QPolygonF> Path::RoutesOf(const Step& step) const {
  const QRect from = AreaOf(step.from), to = AreaOf(step.to);
  if (step.from->parentWidget() == step.to->parentWidget() && from.left() == to.left()) {
    const double middle = from.center().x();
    return {{QPointF(middle, from.bottom() + 1), QPointF(middle, to.top())}};
  }
  if (!Faces(step.from, step.to)) return {BentRoute(from, to)};
  std::vector<QPolygonF> routes;
  for (const double level : LevelsOf(step)) {
    routes.push_back({QPointF(from.right() + 1, level), QPointF(to.left(), level)});
  }
  return routes;
}

QPolygonF Path::BentRoute(const QRect& from, const QRect& to) const {
  const double aside = LineHeight(whole) / 3.0, down = from.center().y();
  const double before = to.left() - aside, behind = from.right() + aside;
  QPolygonF route{QPointF(from.right() + 1, down), QPointF(behind, down)};
  if (before < behind) {  // back to the beginning of a row below
    const double between = (from.bottom() + to.top()) / 2.0;
    route << QPointF(behind, between) << QPointF(before, between);
  } else {
    route.back().setX(before);
  }
  return route << QPointF(before, to.center().y()) << QPointF(to.left(), to.center().y());
}

void Path::DrawStep(QPainter& painter, const Step& step) const {
  for (const QPolygonF& route : RoutesOf(step)) {
    painter.setBrush(Qt::NoBrush);
    painter.drawPolyline(route);
    const QPointF last = route.back() - route[route.size() - 2];
    DrawTip(painter, route.back(), last.y() > last.x() ? QPointF(0, 1) : QPointF(1, 0));
  }
}

void Path::DrawTip(QPainter& painter, const QPointF& tip, const QPointF& direction) const {
  const double reach = LineHeight(whole) / 3.5;
  const QPointF back = tip - direction * reach;
  const QPointF aside = QPointF(direction.y(), direction.x()) * reach * 0.7;
  painter.setBrush(painter.pen().color());
  painter.drawPolygon(QPolygonF{tip, back - aside, back + aside});
}

void Path::Draw(QPainter& painter) const {
  std::set<Block> passed;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(0.5, 0.5);  // onto the pixels
  painter.setPen(QPen(whole.palette().color(QPalette::PlaceholderText), 1));
  for (const Step& step : steps) {
    const bool arrives =
        step.from->isEnabled() ? step.to->isEnabled() || !Leads(step.from) : passed.contains(step.from);
    if (!arrives) continue;
    if (!step.to->isEnabled()) passed.insert(step.to);
    DrawStep(painter, step);
  }
}

}  // namespace

void DrawSignalPath(QPainter& painter, const FrameView& flow) { Path(flow).Draw(painter); }

}  // namespace desktop
