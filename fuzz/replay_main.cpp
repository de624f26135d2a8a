// Runs a fuzz target without a fuzzer: document_fuzz COUNT FILE...
//
// Each file is an input as it is, cut at every byte, and with every byte flipped, set to zero, deleted and doubled.
// COUNT more inputs are mixed from the files and random bytes, the same ones each time. An input that fails is left in
// the file failed_input.
#include <csignal>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::string current;

void save_current(int /*signal*/)
{
    std::ofstream("failed_input", std::ios::binary) << current;
}

void run(const std::string& input)
{
    current = input;
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
}

void run_variants(const std::string& input)
{
    run(input);
    for (std::size_t i = 0; i < input.size(); ++i) {
        const std::string before = input.substr(0, i);
        const std::string after = input.substr(i + 1);
        run(before);
        run(before + static_cast<char>(~input[i]) + after);
        run(before + '\0' + after);
        run(before + after);
        run(before + input[i] + input[i] + after);
    }
}

// An input in which a few parts are replaced by parts of other inputs, or by random bytes.
std::string mixed(const std::vector<std::string>& inputs, std::mt19937& random)
{
    const auto below = [&](std::size_t limit) { return random() % limit; };
    std::string result = inputs[below(inputs.size())];
    for (std::size_t edits = 1 + below(6); edits != 0; --edits) {
        const std::string& other = inputs[below(inputs.size())];
        std::string part = other.substr(below(other.size() + 1), 1 + below(30));
        if (below(2) == 0) part = std::string(1, static_cast<char>(random()));
        result.replace(below(result.size() + 1), below(4), part);
    }
    return result;
}

}  // namespace

int main(int count, char** arguments)
{
    std::signal(SIGABRT, save_current);
    std::vector<std::string> inputs;
    for (int i = 2; i < count; ++i) {
        std::ifstream in(arguments[i], std::ios::binary);
        if (!in) return 1;
        inputs.emplace_back(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
        run_variants(inputs.back());
    }
    if (inputs.empty()) return 1;
    std::mt19937 random(1);
    for (int i = 0; i < std::stoi(arguments[1]); ++i) run(mixed(inputs, random));
    return 0;
}
