#include "TargetRefusalRecorder.h"

#include "TargetRefusal.h"

namespace {

std::vector<std::filesystem::path> &recorded()
{
    static std::vector<std::filesystem::path> targets;
    return targets;
}

} // namespace

// The program logs a refused target; these tests, which build without Qt and
// the log, keep it for the test to look at.
void refuseLinkedTarget(const std::filesystem::path &target)
{
    recorded().push_back(target);
}

std::vector<std::filesystem::path> takeRefusedTargets()
{
    std::vector<std::filesystem::path> targets;
    targets.swap(recorded());
    return targets;
}
