// The pitch search walks the route a few times where the full search of the
// reference walks it up to a hundred: both must lay the same holes, on
// random routes with curves, sharp turns and hairpins, open and closed.
#include <gtest/gtest.h>

#include <array>
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

TEST(PitchSearch, FewWalksLayTheHolesOfTheFullSearch) {
  std::mt19937 rng(23);
  std::uniform_real_distribution<float> coord(0.0f, 80.0f), pitchOf(1.5f, 9.0f);
  for (int round = 0; round < 160; ++round) {
    // Lines and curves point to point; a closed one comes back to its start.
    const bool closed = round % 2 == 1;
    std::vector<std::unique_ptr<TPW_Path>> owned;
    std::vector<TPW_Path*> shapes;
    const int n = 1 + int(rng() % 8);
    const TPointF first(coord(rng), coord(rng));
    TPointF at = first;
    for (int i = 0; i < n; ++i) {
      const TPointF to = closed && i + 1 == n ? first : TPointF(coord(rng), coord(rng));
      owned.push_back(rng() % 2 ? shapes::line(at, to)
                                : shapes::bezier(at, TPointF(coord(rng), coord(rng)), TPointF(coord(rng), coord(rng)), to));
      shapes.push_back(owned.back().get());
      at = to;
    }
    if (closed && round % 10 == 1) {
      owned.push_back(shapes::ellipse(TPointF(40, 40), 20.0f + coord(rng), 10.0f + coord(rng) / 2));
      shapes = {owned.back().get()};
    }
    std::vector<TTrackLeg> legs;
    for (TPW_Path* s : shapes) legs.push_back(TTrackLeg{s, s->FStartPt, s->FEndPt});
    const TRouteTrack track = closed ? TRouteTrack::aroundLoop(shapes, shapes[0]->FStartPt) : TRouteTrack(legs);
    TStitchSettings s;
    s.FPitch = pitchOf(rng);
    s.FPitchMode = std::array{TPitchMode::Auto, TPitchMode::Count, TPitchMode::Fixed}[rng() % 3];
    s.FNumOfHoles = float(2 + rng() % 40);
    SCOPED_TRACE(::testing::Message() << "round " << round << " pitch " << s.FPitch << " holes " << s.FNumOfHoles);

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

}  // namespace
