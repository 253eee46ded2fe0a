#include "system/priority.h"

#include <csignal>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace kv {
namespace {

// A process that does nothing, to be renamed, slowed and ended at will.
class IdleChild {
 public:
  IdleChild() : id_(fork()) {
    if (id_ == 0) {
      while (true) pause();
    }
  }
  IdleChild(const IdleChild&) = delete;
  IdleChild& operator=(const IdleChild&) = delete;
  ~IdleChild() {
    kill(id_, SIGKILL);
    waitpid(id_, nullptr, 0);
  }
  int Id() const { return id_; }

 private:
  pid_t id_;
};

TEST(Priority, ReadsBackWhatIsInForce) {
  const IdleChild child;
  const auto id = static_cast<id_t>(child.Id());
  ASSERT_EQ(setpriority(PRIO_PROCESS, id, 0), 0);
  EXPECT_EQ(GetProcessPriorityClass(child.Id()), 32);
  EXPECT_EQ(SetProcessPriorityClass(child.Id(), 77), 32);
  for (const auto& [nice, priority_class] : {std::pair(5, 32), {6, 16384}}) {
    ASSERT_EQ(setpriority(PRIO_PROCESS, id, nice), 0);
    EXPECT_EQ(GetProcessPriorityClass(child.Id()), priority_class) << nice;
  }
  EXPECT_EQ(SetProcessPriorityClass(child.Id(), 16384), 16384);
  EXPECT_EQ(getpriority(PRIO_PROCESS, id), 10);
  ASSERT_EQ(setpriority(PRIO_PROCESS, id, 15), 0);
  EXPECT_EQ(GetProcessPriorityClass(child.Id()), 64);
  EXPECT_EQ(SetProcessPriorityClass(child.Id(), 64), 64);
  EXPECT_EQ(getpriority(PRIO_PROCESS, id), 19);
  // Upwards only a privileged user gets what is asked for; the answer tells the truth to both.
  const int got = SetProcessPriorityClass(child.Id(), 128);
  EXPECT_EQ(got, getpriority(PRIO_PROCESS, id) == -10 ? 128 : 64);
  EXPECT_EQ(GetProcessPriorityClass(-1), 0);
  EXPECT_NE(GetProcessPriorityClass(0), 0);
}

}  // namespace
}  // namespace kv
