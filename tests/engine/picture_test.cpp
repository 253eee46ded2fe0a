// Where pictures appear and which: read back from what the surfaces show, at the screen's scale.
// The frames of the films carry their number, see tests/media/make_media.

#include "engine_world_qt.h"

#include <QColor>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <gtest/gtest.h>

namespace kv {
namespace {

constexpr double kFramesPerSecond = 25.0;
const QColor kBackground(200, 0, 200);  // no colour of the films

// Device-independent pixels of the surface.
struct Place {
  int left, top, width, height;
};

// The device pixels that are not background.
QRect PictureIn(const QImage& image) {
  QRect found;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      if (image.pixelColor(x, y) != kBackground) found |= QRect(x, y, 1, 1);
    }
  }
  return found;
}

// The number of the frame that fills `place`; -1 where there is none.
int FrameIn(const QImage& image, const QRect& place) {
  if (place.isEmpty()) return -1;
  int number = 0;
  for (int block = 0; block < 8; ++block) {
    const int x = place.left() + place.width() * (2 * block + 1) / 16;
    number = number * 2 + (image.pixelColor(x, place.top() + place.height() / 4).value() > 127);
  }
  // The bar in the lower half says the same, which an upside down or shifted picture would not.
  int bar = 0;
  const int y = place.top() + place.height() * 3 / 4;
  for (int x = place.left(); x <= place.right(); ++x) bar += image.pixelColor(x, y).value() > 127;
  const double from_bar = bar * 80.0 / place.width();
  return std::abs(from_bar - number) < 2.0 ? number : -1;
}

class PictureTest : public ::testing::Test, protected EngineWorld {
 protected:
  PictureTest() {
    for (VideoSurface* surface : {&Surface(), &other_}) {
      surface->setPalette(QPalette(kBackground));
      surface->resize(320, 240);
      surface->show();
    }
  }

  static int Shown(VideoSurface& surface) {
    const QImage image = Look(surface);
    return FrameIn(image, PictureIn(image));
  }

  ::testing::AssertionResult Shows(VideoSurface& surface, int frame) {
    if (Becomes([&] { return Shown(surface) == frame; }, 3000)) {
      return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure() << "shows " << Shown(surface) << ", not " << frame;
  }

  static bool IsBare(VideoSurface& surface) { return PictureIn(Look(surface)).isEmpty(); }

  std::shared_ptr<FilterGraph> Film(const Place& place) {
    auto graph = Render("film25.mkv");
    EXPECT_TRUE(graph->put_Owner(Surface().Handle()));
    EXPECT_TRUE(graph->put_WindowStyle(0x10000000));
    EXPECT_TRUE(graph->SetWindowPosition(place.left, place.top, place.width, place.height));
    return graph;
  }

  void ExpectPictureAt(VideoSurface& surface, const Place& place) {
    const double scale = surface.devicePixelRatioF();
    const QRectF wanted(place.left * scale, place.top * scale, place.width * scale,
                        place.height * scale);
    // An edge between two device pixels may fall on either.
    QRectF found;
    const auto near = [&] {
      found = PictureIn(Look(surface));
      return std::max({std::abs(found.left() - wanted.left()), std::abs(found.top() - wanted.top()),
                       std::abs(found.right() - wanted.right()),
                       std::abs(found.bottom() - wanted.bottom())}) <= 1.0;
    };
    EXPECT_TRUE(Becomes(near, 3000))
        << found.left() << ',' << found.top() << ' ' << found.width() << 'x' << found.height();
  }

  VideoSurface other_{Engine().Video().Surfaces()};
};

TEST_F(PictureTest, FillsItsRectangleAndNothingElse) {
  const auto graph = Film({0, 0, 320, 240});
  ASSERT_TRUE(graph->put_CurrentPosition(37 / kFramesPerSecond));
  for (const Place& place : {Place{0, 0, 320, 240}, Place{13, 7, 161, 121}, Place{0, 30, 320, 180},
                             Place{101, 3, 64, 48}, Place{53, 41, 211, 97}}) {
    EXPECT_TRUE(graph->SetWindowPosition(place.left, place.top, place.width, place.height));
    ExpectPictureAt(Surface(), place);
    EXPECT_TRUE(Shows(Surface(), 37));
  }
  EXPECT_TRUE(graph->SetWindowPosition(20, 30, 0, 0));
  EXPECT_TRUE(IsBare(Surface()));
}

TEST_F(PictureTest, IsTheOneOfThePosition) {
  const auto graph = Film({0, 0, 320, 240});
  EXPECT_TRUE(Shows(Surface(), 0));
  for (const int frame : {12, 11, 13, 63, 1, 0, 40, 73}) {
    ASSERT_TRUE(graph->put_CurrentPosition(frame / kFramesPerSecond));
    EXPECT_TRUE(Shows(Surface(), frame));
  }
  // Not the one where the last of several hasty jumps came through.
  for (int frame = 5; frame <= 65; frame += 3) {
    ASSERT_TRUE(graph->put_CurrentPosition(frame / kFramesPerSecond));
    Pass(frame % 7);
  }
  EXPECT_TRUE(Shows(Surface(), 65));
  Pass(100);
  EXPECT_EQ(Shown(Surface()), 65) << "halted, it stays";
}

TEST_F(PictureTest, KeepsUpWithThePositionWhilePlaying) {
  const auto graph = Film({0, 0, 160, 120});
  ASSERT_TRUE(graph->Run());
  int last = 0;
  int looks = 0;
  while (last < 50 && looks < 400) {
    Pass(20);
    const int shown = Shown(Surface());
    const double position = graph->get_CurrentPosition().value_or(-1.0) * kFramesPerSecond;
    ++looks;
    if (shown < 0) continue;
    ASSERT_GE(shown, last);
    ASSERT_NEAR(shown, position, 0.4 * kFramesPerSecond);
    last = shown;
  }
  EXPECT_GE(last, 50);
}

TEST_F(PictureTest, MovesToAnotherSurfaceWithoutAReload) {
  const std::string film = Folder().Path("film.mkv");
  std::filesystem::copy_file(Path("film25.mkv"), film);
  OpenWatch watch(film);
  clsDShowControl movie(Engine(), Pump());
  VideoSurface& first = Surface();
  ASSERT_TRUE(movie.DS_OpenFile(film, 10, 20, 160, 120, first.Handle()));
  movie.DS_Play();
  movie.DS_Pause();
  movie.DS_SetPosition(30 / kFramesPerSecond);
  EXPECT_TRUE(Shows(first, 30));
  ExpectPictureAt(first, {20, 10, 160, 120});
  EXPECT_TRUE(IsBare(other_));
  EXPECT_TRUE(watch.Opened());

  for (const auto& [from, to] : {std::pair(&first, &other_), std::pair(&other_, &first)}) {
    movie.DS_ChangeTarget(5, 15, 240, 180, to->Handle());
    EXPECT_TRUE(Shows(*to, 30));
    ExpectPictureAt(*to, {15, 5, 240, 180});
    EXPECT_TRUE(IsBare(*from));
  }
  EXPECT_FALSE(watch.Opened());
  EXPECT_DOUBLE_EQ(movie.DS_GetPosition(), 30 / kFramesPerSecond);
}

// A window with the picture in it is closed: the picture is nowhere, and playing goes on.
TEST_F(PictureTest, OutlivesItsSurface) {
  auto graph = Film({0, 0, 160, 120});
  {
    VideoSurface brief(Engine().Video().Surfaces());
    brief.setPalette(QPalette(kBackground));
    brief.resize(200, 200);
    brief.show();
    EXPECT_TRUE(graph->put_Owner(brief.Handle()));
    EXPECT_TRUE(Shows(brief, 0));
  }
  EXPECT_TRUE(graph->Run());
  EXPECT_TRUE(Becomes([&] { return graph->get_CurrentPosition().value_or(0.0) > 0.2; }));
  EXPECT_FALSE(graph->put_FullScreenMode(true)) << "there is nothing to fill the screen with";
  EXPECT_TRUE(graph->Pause());
  EXPECT_TRUE(graph->put_Owner(Surface().Handle()));
  ASSERT_TRUE(graph->put_CurrentPosition(50 / kFramesPerSecond));
  EXPECT_TRUE(Shows(Surface(), 50));
  graph.reset();
  EXPECT_TRUE(IsBare(Surface())) << "it ends with its graph";
}

}  // namespace
}  // namespace kv
