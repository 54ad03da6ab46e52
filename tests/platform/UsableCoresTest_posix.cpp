#include "platform/UsableCores.h"
#include "tests/TempFolder.h"
#include "tests/Testing.h"

#include <sched.h>
#include <thread>

namespace {

using scenedetect::CoresOfControlGroups;

struct Limited {
    const char* name;
    const char* groups;                                     // of the process
    std::vector<std::pair<const char*, const char*>> files; // in the folder of the groups
    std::optional<int> cores;
};

TEST(UsableCores, FollowTheControlGroups) {
    const Limited cases[] = {
        {"no groups", "", {}, {}},
        {"v2", "0::/job\n", {{"job/cpu.max", "400000 100000\n"}}, 4},
        {"part of a processor", "0::/job\n", {{"job/cpu.max", "150000 100000\n"}}, 2},
        {"the narrowest around it counts",
         "0::/slurm/job/step\n",
         {{"slurm/cpu.max", "800000 100000\n"},
          {"slurm/job/cpu.max", "300000 100000\n"},
          {"slurm/job/step/cpu.max", "max 100000\n"}},
         3},
        {"container that does not see its group", "0::/host/abc\n", {{"cpu.max", "200000 100000\n"}}, 2},
        {"v1",
         "3:memory:/job\n2:cpu,cpuacct:/job\n",
         {{"cpu/job/cpu.cfs_quota_us", "250000\n"}, {"cpu/job/cpu.cfs_period_us", "50000\n"}},
         5},
        {"v1 without a limit",
         "2:cpuacct,cpu:/\n",
         {{"cpu/cpu.cfs_quota_us", "-1\n"}, {"cpu/cpu.cfs_period_us", "100000\n"}},
         {}},
        {"v1 beside v2",
         "1:cpu:/a\n0::/b\n",
         {{"cpu/a/cpu.cfs_quota_us", "600000\n"},
          {"cpu/a/cpu.cfs_period_us", "100000\n"},
          {"b/cpu.max", "700000 100000\n"}},
         6},
        {"nonsense", "0::/job\n", {{"job/cpu.max", "many 0\n"}}, {}},
    };
    for (const Limited& each : cases) {
        const TempFolder root;
        const auto write = [&root](const std::filesystem::path& path, const char* text) {
            std::filesystem::create_directories((root / path).parent_path());
            std::ofstream(root / path) << text;
        };
        write("proc/self/cgroup", each.groups);
        for (const auto& [name, text] : each.files)
            write(std::filesystem::path("sys/fs/cgroup") / name, text);
        EXPECT_EQ(CoresOfControlGroups(root / ""), each.cores) << each.name;
    }
}

TEST(UsableCores, AreThoseThatTheThreadMayRunOn) {
    EXPECT_GE(scenedetect::UsableCores(), 1);
    // In a thread of its own, whose set ends with it.
    std::thread([] {
        cpu_set_t set;
        ASSERT_EQ(sched_getaffinity(0, sizeof set, &set), 0);
        int first = 0;
        while (!CPU_ISSET(first, &set))
            ++first;
        CPU_ZERO(&set);
        CPU_SET(first, &set);
        ASSERT_EQ(sched_setaffinity(0, sizeof set, &set), 0);
        EXPECT_EQ(scenedetect::UsableCores(), 1);
    }).join();
}

} // namespace
