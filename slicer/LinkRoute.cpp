#include "LinkRoute.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <utility>

namespace torvan::slicer {
namespace {

constexpr double grid = 10;
constexpr double stubLength = 10;  // how far a line leaves its block before it turns
constexpr double slack = 4;        // an offset this small is drawn as a straight line

/// In clockwise order, as quarter turns go.
enum class Side { Left, Top, Right, Bottom };

/// One end of a link. Splits have no side: lines meet them from anywhere.
struct End {
  Point at;
  std::optional<Side> side;
  Rectangle block;
};

Side uprightSide(const Block& block, const Port& port) {
  const bool isInput = port.direction == Direction::In;
  if (port.kind == SignalKind::Event) return isInput ? Side::Top : Side::Bottom;
  if (!isInput) return Side::Right;
  if (block.kind != "SUM_f") return Side::Left;
  // The round adder takes its three inputs from three sides.
  return port.number == 1 ? Side::Bottom : port.number == 3 ? Side::Top : Side::Left;
}

Side defaultSide(const Block& block, const Port& port) {
  const int upright = static_cast<int>(uprightSide(block, port));
  const Side side = static_cast<Side>((upright + block.orientation.quarterTurns) % 4);
  const bool isHorizontal = side == Side::Left || side == Side::Right;
  const bool isSwapped =
      isHorizontal ? block.orientation.leftRightMirrored : block.orientation.topBottomMirrored;
  return isSwapped ? static_cast<Side>((static_cast<int>(side) + 2) % 4) : side;
}

/// A port that the file places sits just outside one edge of its block.
std::optional<End> placeFromFile(const Block& block, const Port& port) {
  if (!port.centre) return std::nullopt;
  const Rectangle& box = block.geometry;
  const Point onEdge{std::clamp(port.centre->x, 0.0, box.width),
                     std::clamp(port.centre->y, 0.0, box.height)};
  const double dx = port.centre->x - onEdge.x;
  const double dy = port.centre->y - onEdge.y;
  if ((dx == 0) == (dy == 0)) return std::nullopt;
  const Side side =
      dy == 0 ? (dx < 0 ? Side::Left : Side::Right) : (dy < 0 ? Side::Top : Side::Bottom);
  return End{{box.x + onEdge.x, box.y + onEdge.y}, side, box};
}

/// Other ports share their edge evenly, in the order of their numbers and on the grid if they fit.
End placeOnEdge(const Block& block, const Port& port) {
  const Side side = defaultSide(block, port);
  const auto isOnSide = [&](const Port& other) { return defaultSide(block, other) == side; };
  const auto isBefore = [&](const Port& other) {
    return isOnSide(other) && other.number < port.number;
  };
  const auto all = std::count_if(block.ports.begin(), block.ports.end(), isOnSide);
  const auto before = std::count_if(block.ports.begin(), block.ports.end(), isBefore);
  const auto along = [&](double length) {
    const double gap = length / static_cast<double>(all + 1);
    const double place = gap * static_cast<double>(before + 1);
    return all > 1 && gap >= grid ? std::round(place / grid) * grid : place;
  };
  const Rectangle& box = block.geometry;
  const double x = box.x + along(box.width);
  const double y = box.y + along(box.height);
  const std::array<Point, 4> places{Point{box.x, y}, Point{x, box.y}, Point{box.x + box.width, y},
                                    Point{x, box.y + box.height}};
  return {places[static_cast<std::size_t>(side)], side, box};
}

End endOf(const Diagram& diagram, const PortIndex& index) {
  const Block& block = diagram.blocks[index.block];
  const Rectangle& box = block.geometry;
  if (block.isSplit) return {{box.x + box.width / 2, box.y + box.height / 2}, std::nullopt, box};
  const Port& port = block.ports[index.port];
  const auto placed = placeFromFile(block, port);
  return placed ? *placed : placeOnEdge(block, port);
}

bool isHorizontal(const End& end) { return end.side == Side::Left || end.side == Side::Right; }

bool isVertical(const End& end) { return end.side == Side::Top || end.side == Side::Bottom; }

Point stubOf(const End& end) {
  constexpr std::array<Point, 4> outwards{Point{-stubLength, 0}, Point{0, -stubLength},
                                          Point{stubLength, 0}, Point{0, stubLength}};
  if (!end.side) return end.at;
  const Point step = outwards[static_cast<std::size_t>(*end.side)];
  return {end.at.x + step.x, end.at.y + step.y};
}

/// Whether `target` lies on the side of its block where a line leaves.
bool isAhead(const End& end, const Point& target) {
  if (!end.side) return true;
  const Point stub = stubOf(end);
  return isHorizontal(end) ? (stub.x - end.at.x) * (target.x - end.at.x) > 0
                           : (stub.y - end.at.y) * (target.y - end.at.y) > 0;
}

Point swapped(const Point& point) { return {point.y, point.x}; }

/// A free lane between two intervals, or beyond both when they overlap.
double laneBetween(double start1, double length1, double start2, double length2) {
  const double end1 = start1 + length1;
  const double end2 = start2 + length2;
  if (end1 < start2) return (end1 + start2) / 2;
  if (end2 < start1) return (end2 + start1) / 2;
  return std::max(end1, end2) + stubLength;
}

/// Bends between two stubs that leave along the same axis.
std::vector<Point> bendParallel(const End& from, const End& to, bool horizontal) {
  const auto turn = [&](const Point& point) { return horizontal ? point : swapped(point); };
  const Point a = turn(stubOf(from));
  const Point b = turn(stubOf(to));
  if (isAhead(from, stubOf(to)) && isAhead(to, stubOf(from))) {
    const double middle = (a.x + b.x) / 2;
    return {turn({middle, a.y}), turn({middle, b.y})};
  }
  const Rectangle& box1 = from.block;
  const Rectangle& box2 = to.block;
  const double lane = horizontal ? laneBetween(box1.y, box1.height, box2.y, box2.height)
                                 : laneBetween(box1.x, box1.width, box2.x, box2.width);
  if (from.side == to.side) {
    const double outer = isAhead(from, stubOf(to)) ? b.x : a.x;
    return {turn({outer, a.y}), turn({outer, b.y})};
  }
  return {turn(a), turn({a.x, lane}), turn({b.x, lane}), turn(b)};
}

/// Bends between stubs of which at most one leaves vertically and at most one horizontally.
std::vector<Point> bendCrossing(const End& from, const End& to) {
  const bool horizontalFirst = isHorizontal(from) || isVertical(to) || (!from.side && !to.side);
  const Point first{to.at.x, from.at.y};
  const Point second{from.at.x, to.at.y};
  const Point corner = horizontalFirst ? first : second;
  if (isAhead(from, corner) && isAhead(to, corner)) return {corner};
  const Point a = stubOf(from);
  const Point b = stubOf(to);
  return {a, horizontalFirst ? Point{a.x, b.y} : Point{b.x, a.y}, b};
}

bool isAlmostStraight(const Point& a, const Point& b) {
  return std::abs(a.x - b.x) < slack || std::abs(a.y - b.y) < slack;
}

std::vector<Point> freeRoute(const End& from, const End& to) {
  if (isAlmostStraight(from.at, to.at) && isAhead(from, to.at) && isAhead(to, from.at)) return {};
  const bool bothHorizontal = isHorizontal(from) && isHorizontal(to);
  const bool bothVertical = isVertical(from) && isVertical(to);
  return bothHorizontal || bothVertical ? bendParallel(from, to, bothHorizontal)
                                        : bendCrossing(from, to);
}

/// Leads a route from its last bend to an end: into a block at a right angle to its edge, into a
/// split after one more turn.
void leadTo(const End& end, std::vector<Point>& route) {
  const Point bend = route.back();
  if (!isAhead(end, bend)) {
    // A single bend only says in which lane the line is to run.
    if (route.size() == 1) route.clear();
    const Point stub = stubOf(end);
    route.push_back(isHorizontal(end) ? Point{stub.x, bend.y} : Point{bend.x, stub.y});
    route.push_back(stub);
  } else if (!isAlmostStraight(end.at, bend)) {
    const Point before = route.size() > 1 ? route[route.size() - 2] : bend;
    const bool cameHorizontally = std::abs(bend.x - before.x) > std::abs(bend.y - before.y);
    const bool endsHorizontally = end.side ? isHorizontal(end) : cameHorizontally;
    route.push_back(endsHorizontally ? Point{bend.x, end.at.y} : Point{end.at.x, bend.y});
  }
  route.push_back(end.at);
}

}  // namespace

std::vector<Point> routeLink(const Diagram& diagram, const Link& link) {
  const End from = endOf(diagram, link.source);
  const End to = endOf(diagram, link.target);
  if (link.points.empty()) {
    std::vector<Point> route = freeRoute(from, to);
    route.insert(route.begin(), from.at);
    route.push_back(to.at);
    return route;
  }
  // Splits come second: how they are met depends on the rest of the line.
  const bool startsAtTarget = !from.side;
  std::vector<Point> route = link.points;
  if (!startsAtTarget) std::reverse(route.begin(), route.end());
  leadTo(startsAtTarget ? to : from, route);
  std::reverse(route.begin(), route.end());
  leadTo(startsAtTarget ? from : to, route);
  if (startsAtTarget) std::reverse(route.begin(), route.end());
  return route;
}

}  // namespace torvan::slicer
