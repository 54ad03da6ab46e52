#include "platform/UsableCores.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <fstream>
#include <limits>
#include <sched.h>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace scenedetect {
namespace {

int CoresOfAffinity() {
    // The kernel refuses a set that has not room for all processors that it could have.
    std::vector<cpu_set_t> set(1);
    while (sched_getaffinity(0, set.size() * sizeof(cpu_set_t), set.data()) != 0) {
        if (errno != EINVAL || set.size() > 64)
            return static_cast<int>(std::max(1u, std::thread::hardware_concurrency()));
        set.resize(set.size() * 2);
    }
    return std::max(1, CPU_COUNT_S(set.size() * sizeof(cpu_set_t), set.data()));
}

// How microseconds of processor time in each period are written: two numbers in one file or two.
struct Limit {
    std::string controller; // in the process's list of groups; empty: v2
    const char* mount;
    std::vector<const char*> files;
};

const Limit kLimits[] = {{"", "/sys/fs/cgroup", {"cpu.max"}},
                         {"cpu", "/sys/fs/cgroup/cpu", {"cpu.cfs_quota_us", "cpu.cfs_period_us"}}};

std::optional<int> CoresOf(const Limit& limit, const std::string& folder) {
    std::string text;
    for (const char* file : limit.files) {
        std::string line;
        std::getline(std::ifstream(folder + '/' + file), line);
        text += line + ' ';
    }
    std::int64_t quota = 0;
    std::int64_t period = 0;
    if (!(std::istringstream(text) >> quota >> period) || quota <= 0 || period <= 0) // "max", or -1
        return std::nullopt;
    const std::int64_t cores = quota / period + (quota % period != 0 ? 1 : 0);
    return static_cast<int>(std::min<std::int64_t>(cores, std::numeric_limits<int>::max()));
}

bool IsListed(const std::string& word, const std::string& list) {
    return (',' + list + ',').find(',' + word + ',') != std::string::npos;
}

} // namespace

std::optional<int> CoresOfControlGroups(const std::string& root) {
    std::optional<int> fewest;
    std::ifstream groups(root + "/proc/self/cgroup");
    // number:controllers:/group
    for (std::string number, controllers, group; std::getline(groups, number, ':') &&
                                                 std::getline(groups, controllers, ':') &&
                                                 std::getline(groups, group);)
        for (const Limit& limit : kLimits) {
            if (!IsListed(limit.controller, controllers))
                continue;
            const std::string mount = root + limit.mount;
            // Each group around it limits it, too. In a container the inner ones may lie out of sight.
            for (std::string inner = group;; inner.resize(inner.rfind('/'))) {
                if (const auto cores = CoresOf(limit, mount + inner))
                    fewest = std::min(fewest.value_or(*cores), *cores);
                if (inner.find('/') == std::string::npos)
                    break;
            }
        }
    return fewest;
}

int UsableCores() {
    const int cores = CoresOfAffinity();
    return std::min(cores, CoresOfControlGroups().value_or(cores));
}

} // namespace scenedetect
