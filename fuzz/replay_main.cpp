// Runs a fuzz target over files, or the files of folders, without a fuzzer: each file as it is, cut at every byte, and
// with every byte flipped, set to zero, deleted and doubled.
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::size_t inputs = 0;

void run(const std::string& input)
{
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
    ++inputs;
}

void run_variants(const std::filesystem::path& path)
{
    std::ifstream in(path, std::ios::binary);
    const std::string input{std::istreambuf_iterator<char>(in), {}};
    std::cout << path.filename().string() << std::endl;  // seen also when the target aborts
    run(input);
    for (std::size_t i = 0; i < input.size(); ++i) {
        const std::string before = input.substr(0, i);
        const std::string behind = input.substr(i + 1);
        run(before);
        run(before + static_cast<char>(~input[i]) + behind);
        run(before + '\0' + behind);
        run(before + behind);
        run(before + input[i] + input[i] + behind);
    }
}

}  // namespace

int main(int count, char** paths)
{
    for (int i = 1; i < count; ++i) {
        if (!std::filesystem::is_directory(paths[i])) {
            run_variants(paths[i]);
            continue;
        }
        for (const auto& entry : std::filesystem::directory_iterator(paths[i])) run_variants(entry.path());
    }
    std::cout << inputs << " inputs\n";
    return inputs == 0 ? 1 : 0;
}
