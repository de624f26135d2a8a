// Runs a fuzz target over the files of the folders named on the command line, without a fuzzer.
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int count, char** folders)
{
    std::size_t files = 0;
    for (int i = 1; i < count; ++i) {
        for (const auto& entry : std::filesystem::directory_iterator(folders[i])) {
            std::ifstream in(entry.path(), std::ios::binary);
            const std::string input{std::istreambuf_iterator<char>(in), {}};
            std::cout << entry.path().filename().string() << std::endl;  // seen also when the target aborts
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
            ++files;
        }
    }
    std::cout << files << " inputs\n";
    return files == 0 ? 1 : 0;
}
