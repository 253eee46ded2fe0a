#include "controls/picture_pace.h"

#include <QTest>

#include <gtest/gtest.h>

namespace kv {
namespace {

TEST(PicturePace, PaintsWithThePicturesAndAloneWhenNoneCome) {
  int painted = 0;
  PicturePace pace([&painted] { ++painted; });

  pace.Wanted();
  EXPECT_EQ(painted, 1) << "without pictures at once";
  pace.PictureComes();
  EXPECT_EQ(painted, 1) << "nothing has changed since";

  pace.Wanted();
  pace.Wanted();
  EXPECT_EQ(painted, 1) << "waits for the picture";
  pace.PictureComes();
  EXPECT_EQ(painted, 2) << "both changes with one picture";

  pace.Wanted();
  EXPECT_TRUE(QTest::qWaitFor([&painted] { return painted == 3; })) << "the picture never came";
  pace.Wanted();
  EXPECT_EQ(painted, 4) << "and is not waited for again";
}

}  // namespace
}  // namespace kv
