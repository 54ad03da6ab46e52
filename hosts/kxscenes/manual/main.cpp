// Prints what is written about kxscenes' options, from the table that kxscenes itself uses:
//   kxscenes-manual TEMPLATE VERSION MAN_PAGE COMPLETION
// reads the first file and writes the last two.
#include "hosts/cli/Completion.h"
#include "hosts/cli/KxOptions.h"
#include "hosts/cli/ManPage.h"

#include <cstdio>
#include <exception>
#include <fstream>
#include <iterator>

int main(int argc, char** argv) {
    using namespace scenedetect;
    if (argc != 5) {
        std::fputs("usage: kxscenes-manual TEMPLATE VERSION MAN_PAGE COMPLETION\n", stderr);
        return kExitUsage;
    }
    try {
        KxOptions options;
        const HostProgram program = KxProgram(options);
        std::ifstream stream(argv[1]);
        const std::string page{std::istreambuf_iterator<char>(stream), {}};
        std::ofstream manual(argv[3]);
        manual << FillManPage(page, program, argv[2]) << std::flush;
        std::ofstream completion(argv[4]);
        completion << CompletionScript(program) << std::flush;
        if (manual && completion)
            return kExitSuccess;
        std::fputs("kxscenes-manual: the files cannot be written\n", stderr);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "kxscenes-manual: %s\n", error.what());
    }
    return kExitFailure;
}
