// The main function of a fuzz target that is built without a fuzzer: runs every file of the given folders.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv) {
    std::set<std::filesystem::path> files;
    for (int i = 1; i < argc; ++i)
        for (const auto& entry : std::filesystem::directory_iterator(argv[i]))
            files.insert(entry.path());
    if (files.empty()) {
        std::fputs("There is nothing to replay.\n", stderr);
        return 1;
    }
    for (const auto& path : files) {
        std::printf("%s\n", path.string().c_str());
        std::fflush(stdout);
        std::ifstream file(path, std::ios::binary);
        const std::vector<char> content{std::istreambuf_iterator<char>(file), {}};
        if (!file) {
            std::fputs("cannot be read\n", stderr);
            return 1;
        }
        // Its own block of exactly this size, so that the sanitizers see a read beyond it.
        const std::vector<std::uint8_t> input(content.begin(), content.end());
        LLVMFuzzerTestOneInput(input.data(), input.size());
    }
    std::printf("%zu inputs\n", files.size());
    return 0;
}
