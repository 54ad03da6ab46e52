#include "hosts/kxscenes/Program.h"

#include "hosts/cli/KxOptions.h"
#include "hosts/cli/MediaLibraries.h"
#include "reading/base/Console.h"
#include "reading/base/HostError.h"
#include "running/batch/RunAll.h"
#include "running/batch/SavedRun.h"

#include <exception>

namespace scenedetect {
namespace {

Verbosity VerbosityOf(const KxOptions& options) {
    return options.isQuiet ? Verbosity::Quiet : options.isVerbose ? Verbosity::Verbose : Verbosity::Normal;
}

constexpr int kPipeSignal = 13;

int ExitCodeOf(BatchEnding ending, int signal) {
    switch (ending) {
    case BatchEnding::Complete:
        return kExitSuccess;
    case BatchEnding::BrokeOff:
        return kExitPartial;
    case BatchEnding::Stopped:
        return kSignalExit + signal;
    case BatchEnding::OutputClosed:
        return kSignalExit + kPipeSignal;
    case BatchEnding::Failed:
        break;
    }
    return kExitFailure;
}

BatchEnding Run(const BatchSettings& batch, std::atomic<bool>& stop, Console& console) {
    try {
        OutputClaims claims;
        if (!batch.savedStatsPaths.empty()) {
            DecideFromStats(batch, claims, console);
            return BatchEnding::Complete;
        }
        const auto plans = MakePlans(batch, claims);
        return RunAll(plans, batch.jobs, claims, stop, console);
    } catch (const OutputClosed&) {
        return BatchEnding::OutputClosed;
    } catch (const std::exception& error) {
        console.Error(ErrorText(error));
    }
    return BatchEnding::Failed;
}

} // namespace

int RunProgram(int argc, const char* const* argv, const ProgramSystem& system) noexcept {
    try {
        KxOptions options;
        if (const auto end = ParseCommandLine(argc, argv, options))
            return PrintAndEnd(*end);
        Console console("kxscenes", VerbosityOf(options));
        if (!system.isOutputOpen) {
            console.Error("standard output is closed");
            return kExitFailure;
        }
        system.begin();
        PrepareLibraries();
        const BatchEnding ending = Run(options.batch, system.stop, console);
        return ExitCodeOf(ending, system.signal);
    } catch (const std::exception&) {
        return kExitFailure;
    }
}

} // namespace scenedetect
