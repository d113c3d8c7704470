// The pitch search walks the route a few times where the full search of the
// reference walks it up to a hundred: both must lay the same holes, on
// random routes with curves, sharp turns and hairpins, open and closed.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <random>

#include "../../bench/reference_rows.h"
#include "../geometry/shape_factory.h"

namespace {

void expectSamePlaces(const TRouteTrack& t, const std::vector<TTrackPos>& a, const std::vector<TTrackPos>& b) {
  ASSERT_EQ(a.size(), b.size());
  for (size_t i = 0; i < a.size(); ++i) {
    const TDPoint p = t.pointAt(a[i]), q = t.pointAt(b[i]);
    ASSERT_NEAR(p.x, q.x, 1e-9) << "hole " << i;
    ASSERT_NEAR(p.y, q.y, 1e-9) << "hole " << i;
  }
}

// A random route: wild ones of lines and curves between random points
// (sharp turns, hairpins), gentle ones that turn a little at each joint
// and with curves that bulge only slightly, so that the walks home in.
void buildRoute(std::mt19937& rng, int round, bool closed, std::vector<std::unique_ptr<TPW_Path>>& owned,
                std::vector<TPW_Path*>& shapes) {
  std::uniform_real_distribution<float> coord(0.0f, 80.0f), unit(-1.0f, 1.0f);
  const bool gentle = round % 3 != 0;
  const int n = gentle ? 12 + int(rng() % 12) : 1 + int(rng() % 8);
  const TPointF first(coord(rng), coord(rng));
  TPointF at = first;
  double heading = 6.2831853 * (unit(rng) + 1.0f) / 2.0f;
  const double turn = closed ? 6.2831853 / n : 0.0;
  for (int i = 0; i < n; ++i) {
    TPointF to(coord(rng), coord(rng));
    if (gentle) {
      const double len = 4.0 + 20.0 * (unit(rng) + 1.0f);
      heading += turn + 0.25 * unit(rng);
      to = TPointF::fromDouble(at.x + len * std::cos(heading), at.y + len * std::sin(heading));
    }
    if (closed && i + 1 == n) to = first;
    if (gentle && i > 0 && i + 1 < n && rng() % 3 == 0) {
      // Where two shapes meet a hair apart, as the flattening of an arc
      // leaves them: the line starts a little back and aside.
      const float back = 0.004f * (unit(rng) + 1.0f) / 2.0f;
      const TPointF from = TPointF::fromDouble(at.x - back * std::cos(heading + 0.3), at.y - back * std::sin(heading + 0.3));
      owned.push_back(shapes::line(from, to));
    } else if (gentle && rng() % 2) {
      const float dx = to.x - at.x, dy = to.y - at.y, b = 0.06f * unit(rng);
      owned.push_back(shapes::bezier(at, TPointF(at.x + dx / 3 - dy * b, at.y + dy / 3 + dx * b),
                                     TPointF(at.x + 2 * dx / 3 - dy * b, at.y + 2 * dy / 3 + dx * b), to));
    } else {
      owned.push_back(rng() % 2 ? shapes::line(at, to)
                                : shapes::bezier(at, TPointF(coord(rng), coord(rng)), TPointF(coord(rng), coord(rng)), to));
    }
    shapes.push_back(owned.back().get());
    at = to;
  }
  if (closed && round % 10 == 1) {
    owned.push_back(shapes::ellipse(TPointF(40, 40), 20.0f + coord(rng), 10.0f + coord(rng) / 2));
    shapes = {owned.back().get()};
  }
}

// Both searches over `rounds` random routes, open and closed, in every pitch
// mode, by both keep rules: the same counts, the same closing pitches to the
// last bit, the same holes.
void compareSearches(unsigned seed, int rounds) {
  std::mt19937 rng(seed);
  std::uniform_real_distribution<float> pitchOf(1.5f, 9.0f);
  for (int round = 0; round < rounds; ++round) {
    const bool closed = round % 2 == 1;
    std::vector<std::unique_ptr<TPW_Path>> owned;
    std::vector<TPW_Path*> shapes;
    buildRoute(rng, round, closed, owned, shapes);
    std::vector<TTrackLeg> legs;
    for (TPW_Path* s : shapes) legs.push_back(TTrackLeg{s, s->FStartPt, s->FEndPt});
    const TRouteTrack track = closed ? TRouteTrack::aroundLoop(shapes, shapes[0]->FStartPt) : TRouteTrack(legs);
    TStitchSettings s;
    s.FPitch = pitchOf(rng);
    s.FPitchMode = std::array{TPitchMode::Auto, TPitchMode::Count, TPitchMode::Fixed}[rng() % 3];
    s.FNumOfHoles = float(2 + rng() % 40);
    SCOPED_TRACE(::testing::Message() << "seed " << seed << " round " << round << " pitch " << s.FPitch
                                      << " holes " << s.FNumOfHoles);

    // The ring's count and pitch, and its holes.
    double closing = -1.0;
    const int count = track.nearestStepCount(s.FPitch, &closing);
    ASSERT_EQ(count, reference::nearestStepCount(track, s.FPitch));
    ASSERT_EQ(closing, reference::pitchForSteps(track, count));
    const int holes = int(s.FNumOfHoles);
    ASSERT_EQ(track.pitchForSteps(holes), reference::pitchForSteps(track, holes));
    std::vector<TTrackPos> fast;
    track.walk(closing, count - 1, fast);
    TStitchSettings ringAuto = s;
    ringAuto.FPitchMode = TPitchMode::Auto;
    if (count >= 2) expectSamePlaces(track, fast, reference::ring(track, ringAuto));

    // The open row's search, by the tool's rules and the API's.
    for (const TKeepRule rule : {TKeepRule::Tool, TKeepRule::Api}) {
      TDividerWalk walk(track);
      TPitchSearch search(walk, s, rule);
      search.run(s.FPitch, true);
      const reference::TSearchResult full = reference::search(track, s, rule, s.FPitch, true);
      ASSERT_EQ(search.kept(), full.kept);
      ASSERT_EQ(search.bestPitch(), full.bestPitch);
      expectSamePlaces(track, search.best().FPlaces, full.best.FPlaces);
    }
  }
}

TEST(PitchSearch, FewWalksLayTheHolesOfTheFullSearch) { compareSearches(23, 160); }

// The same over many more routes; run by hand after changing the search:
// pelwright_tests --gtest_also_run_disabled_tests --gtest_filter='*WideSweep*'
TEST(PitchSearch, DISABLED_WideSweep) {
  for (unsigned seed = 1; seed <= 10; ++seed) compareSearches(seed * 7919u, 200);
}

}  // namespace
