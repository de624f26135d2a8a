// What loading and asking costs, beside what a host would write itself on a popular XML parser: the same file read into
// maps of strings, without a look at its form.
#include <benchmark/benchmark.h>
#include <expat.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <pugixml.hpp>

#include "data_mapper/map_collection.h"

namespace {

using text_map = std::map<std::string, std::string>;
using set_map = std::map<std::string, text_map>;

constexpr int items = 100000;

std::string name_of(int item)
{
    return "item-" + std::to_string(item * 7919LL % items);
}

// A file of one simple map and one collection map, in the folder for temporary files.
std::string file()
{
    const auto path = std::filesystem::temp_directory_path() / "data_mapper4_bench.xml";
    static const bool is_written = [&] {
        std::ofstream out(path, std::ios::binary);
        out << "<?xml version=\"1.0\"?>\n<maps>\n  <map name=\"texts\">\n";
        for (int i = 0; i < items; ++i) {
            out << "    <item name=\"" << name_of(i) << "\"/>\n    <arg name=\"the text of number " << i << "\"/>\n";
        }
        out << "  </map>\n  <collection_map name=\"sets\">\n";
        for (int i = 0; i < items; ++i) {
            out << "    <item name=\"" << name_of(i) << "\" code=\"" << i << "\" colour=\"red\" text=\"R&amp;D " << i
                << "\"/>\n";
        }
        out << "  </collection_map>\n</maps>\n";
        return true;
    }();
    benchmark::DoNotOptimize(is_written);
    return path.string();
}

std::string content()
{
    std::ifstream in(file(), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

void count_bytes(benchmark::State& state)
{
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(std::filesystem::file_size(file())));
}

void parse(benchmark::State& state)
{
    const auto path = NUVEK_2_18::strings::utf8_to_utf16(file());
    for (auto _ : state) {
        NUVEK_2_18::parser::xml_stream_parser parser(path, 2);
        benchmark::DoNotOptimize(parser.parse());
    }
    count_bytes(state);
}
BENCHMARK(parse)->Unit(benchmark::kMillisecond);

void parse_expat(benchmark::State& state)
{
    for (auto _ : state) {
        const std::string text = content();
        XML_Parser parser = XML_ParserCreate(nullptr);
        benchmark::DoNotOptimize(XML_Parse(parser, text.data(), static_cast<int>(text.size()), 1));
        XML_ParserFree(parser);
    }
    count_bytes(state);
}
BENCHMARK(parse_expat)->Unit(benchmark::kMillisecond);

void parse_pugixml(benchmark::State& state)
{
    for (auto _ : state) {
        pugi::xml_document document;
        benchmark::DoNotOptimize(document.load_file(file().c_str()));
    }
    count_bytes(state);
}
BENCHMARK(parse_pugixml)->Unit(benchmark::kMillisecond);

void load(benchmark::State& state)
{
    const std::string path = file();
    for (auto _ : state) {
        data_mapper4::map_collection maps;
        benchmark::DoNotOptimize(maps.load(std::wstring(path.begin(), path.end())));
    }
    count_bytes(state);
}
BENCHMARK(load)->Unit(benchmark::kMillisecond);

struct expat_loader
{
    text_map texts;
    set_map sets;
    std::string item;

    static void start(void* self, const char* tag, const char** attributes)
    {
        auto& loader = *static_cast<expat_loader*>(self);
        if (std::strcmp(tag, "arg") == 0) loader.texts.emplace(loader.item, attributes[1]);
        if (std::strcmp(tag, "item") != 0) return;
        loader.item = attributes[1];
        if (attributes[2] == nullptr) return;
        text_map& set = loader.sets[loader.item];
        for (; *attributes != nullptr; attributes += 2) set.emplace(attributes[0], attributes[1]);
    }
};

void load_expat(benchmark::State& state)
{
    for (auto _ : state) {
        const std::string text = content();
        expat_loader loader;
        XML_Parser parser = XML_ParserCreate(nullptr);
        XML_SetUserData(parser, &loader);
        XML_SetStartElementHandler(parser, expat_loader::start);
        benchmark::DoNotOptimize(XML_Parse(parser, text.data(), static_cast<int>(text.size()), 1));
        XML_ParserFree(parser);
    }
    count_bytes(state);
}
BENCHMARK(load_expat)->Unit(benchmark::kMillisecond);

void load_pugixml(benchmark::State& state)
{
    for (auto _ : state) {
        pugi::xml_document document;
        document.load_file(file().c_str());
        text_map texts;
        set_map sets;
        const pugi::xml_node maps = document.child("maps");
        for (pugi::xml_node item : maps.child("map").children("item")) {
            texts.emplace(item.attribute("name").value(), item.next_sibling().attribute("name").value());
        }
        for (pugi::xml_node item : maps.child("collection_map").children("item")) {
            text_map& set = sets[item.attribute("name").value()];
            for (pugi::xml_attribute each : item.attributes()) set.emplace(each.name(), each.value());
        }
        benchmark::DoNotOptimize(sets);
    }
    count_bytes(state);
}
BENCHMARK(load_pugixml)->Unit(benchmark::kMillisecond);

data_mapper4::map_collection& loaded()
{
    static data_mapper4::map_collection maps;
    const std::string path = file();
    if (!maps.is_loaded("texts")) maps.load(std::wstring(path.begin(), path.end()));
    return maps;
}

template <class question>
void ask(benchmark::State& state, question about)
{
    auto& maps = loaded();
    int i = 0;
    for (auto _ : state) benchmark::DoNotOptimize(about(maps, name_of(i++ % items)));
}

BENCHMARK_CAPTURE(ask, nothing, [](auto& /*maps*/, const std::string& name) { return name.size(); });
BENCHMARK_CAPTURE(ask, has_item, [](auto& maps, const std::string& name) { return maps.has_item("texts", name); });
BENCHMARK_CAPTURE(ask, get_arg, [value = std::string()](auto& maps, const std::string& name) mutable {
    return maps.get_arg("texts", name, value);
});
BENCHMARK_CAPTURE(ask, get_attrib, [value = std::string()](auto& maps, const std::string& name) mutable {
    return maps.get_attrib("sets", name, "colour", value);
});
BENCHMARK_CAPTURE(ask, get_attribs, [value = text_map()](auto& maps, const std::string& name) mutable {
    return maps.get_attribs("sets", name, value);
});

void copy(benchmark::State& state)
{
    for (auto _ : state) benchmark::DoNotOptimize(data_mapper4::map_collection(loaded()));
}
BENCHMARK(copy);

}  // namespace
