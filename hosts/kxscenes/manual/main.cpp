// Prints what is written about kxscenes' options, from the table that kxscenes itself uses:
//   kxscenes-manual TEMPLATE VERSION MAN_PAGE COMPLETION
// reads the first file and writes the last two.
#include "hosts/kxscenes/Options.h"
#include "hosts/kxscenes/manual/Completion.h"
#include "hosts/kxscenes/manual/ManPage.h"
#include "hosts/shared/OptionTable.h"

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
        KxOptions own;
        const HostProgram program = KxProgram(own);
        const OptionTable table(program);
        std::ifstream stream(argv[1]);
        const std::string page{std::istreambuf_iterator<char>(stream), {}};
        std::ofstream manual(argv[3]);
        manual << FillManPage(page, table.app, argv[2]) << std::flush;
        std::ofstream completion(argv[4]);
        completion << CompletionScript(table.app) << std::flush;
        if (manual && completion)
            return kExitSuccess;
        std::fputs("kxscenes-manual: the files cannot be written\n", stderr);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "kxscenes-manual: %s\n", error.what());
    }
    return kExitFailure;
}
