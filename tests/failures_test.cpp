// Memory and files that fail, at every call. A separate program, since it replaces the calls.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <functional>
#include <new>

#include "data_mapper/load_report.h"
#include "documents.h"
#include "platform/text_buffer.h"

#if defined(__linux__)
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#endif

using namespace data_mapper4;

namespace {

// Counts calls, and tells which ones fail.
struct failing_calls
{
    long calls = 0;
    long first = -1;  // the first call that fails, from 0; none if negative
    bool is_once = true;
    std::size_t bytes = 0;  // requested by all calls for memory

    bool fails_now()
    {
        const long call = calls++;
        return first >= 0 && (is_once ? call == first : call >= first);
    }
};

thread_local failing_calls* memory = nullptr;  // counted while it is set

}  // namespace

// Not inlined: a compiler that sees only one of the two would warn of a mismatch.
[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept
{
    if (memory != nullptr) memory->bytes += size;
    return memory != nullptr && memory->fails_now() ? nullptr : std::malloc(size);
}

[[gnu::noinline]] void* operator new(std::size_t size)
{
    void* const block = operator new(size, std::nothrow);
    if (block == nullptr) throw std::bad_alloc();
    return block;
}

[[gnu::noinline]] void operator delete(void* block) noexcept
{
    std::free(block);
}

[[gnu::noinline]] void operator delete(void* block, std::size_t /*size*/) noexcept
{
    std::free(block);
}

namespace {

// Fails one allocation of an operation, or all from one on. True if it got that far; it has then thrown, if it must.
bool fails(long call, bool is_once, const std::function<void()>& operation, bool must_throw = true)
{
    failing_calls calls{0, call, is_once};
    bool has_thrown = false;
    memory = &calls;
    try {
        operation();
    } catch (const std::bad_alloc&) {
        has_thrown = true;
    }
    memory = nullptr;
    const bool is_reached = calls.calls > call;
    EXPECT_TRUE(has_thrown == is_reached || !must_throw) << call;
    return is_reached;
}

}  // namespace

TEST(Failures, OfMemoryAreThrownAndLoseNothingThatWasLoaded)
{
    const documents::folder folder;
    folder.write("old", documents::four_maps("old"));
    folder.write("new", documents::four_maps("new"));
    folder.write("last", "<maps><include file='new'/></maps>");
    map_collection old;
    ASSERT_EQ(old.load(folder.path("old")).type(), map_error_t::no_error);
    const std::string old_answers = documents::all_answers(old, "old");
    const std::wstring path = folder.path("new");
    const std::wstring including = folder.path("last");
    map_collection assigned;
    const std::function<void(map_collection&)> operations[] = {
        [&](map_collection& maps) { maps.load(path); },
        [&](map_collection& maps) { maps.load(including); },
        [&](map_collection& maps) { const map_collection copy = maps; },
        [&](map_collection& maps) { assigned = maps; },
        [&](map_collection& maps) { documents::all_answers(maps, "old"); },
    };
    for (const auto& operation : operations) {
        for (const bool is_once : {true, false}) {
            bool is_reached = true;
            for (long call = 0; is_reached; ++call) {
                map_collection maps = old;
                is_reached = fails(call, is_once, [&] { operation(maps); });
                documents::all_answers(assigned, "old");  // which it may hold in part
                assigned = map_collection();
                for (const auto& [name, kind] : map_collection(maps)) {
                    ASSERT_TRUE(maps.has_item(name, documents::long_name + "a")) << name;
                }
                map_collection target = maps;
                target = old;
                ASSERT_EQ(documents::all_answers(target, "old"), old_answers) << call;
                target.load(folder.path("new"));
                ASSERT_EQ(target.maps().size(), 8U) << call;
            }
        }
    }
}

// The registry and the tables may then come from different collections. A table that is not registered cannot be found.
TEST(Failures, OfMemoryInAnAssignmentHideTablesThatAreNotRegistered)
{
    const documents::folder folder;
    map_collection collections[2];
    for (const int i : {0, 1}) {
        folder.write("m", documents::four_maps(std::string(1, "ab"[i])));
        ASSERT_EQ(collections[i].load(folder.path("m")).type(), map_error_t::no_error);
    }
    const ustring8 item = documents::long_name + 'a';
    bool is_reached = true;
    for (long call = 0; is_reached; ++call) {
        map_collection maps = collections[0];
        is_reached = fails(call, true, [&] { maps = collections[1]; });
        const map_collection copy = maps;
        maps = *&maps;
        maps = copy;
        for (const std::string name : {"amap", "avector_map", "acollection_map", "avector_collection_map", "bmap",
                                       "bvector_map", "bcollection_map", "bvector_collection_map"}) {
            ustring8 text;
            std::vector<ustring8> list;
            std::map<ustring8, ustring8> attribs;
            std::vector<std::map<ustring8, ustring8>> sets;
            const bool is_found = maps.get_arg(name, item, text) || maps.get_args(name, item, list) ||
                                  maps.get_attribs(name, item, attribs) || maps.get_attrib(name, item, "x", text) ||
                                  maps.get_args_vector(name, item, sets);
            EXPECT_TRUE(!is_found || maps.is_loaded(name)) << name << ' ' << call;
            EXPECT_EQ(is_found, maps.has_item(name, item)) << name << ' ' << call;
        }
    }
}

// It throws, or has the same result as without the failure: the standard library may do without the memory.
TEST(Failures, OfMemoryInACheckLeaveTheCollectionUnchanged)
{
    const documents::folder folder;
    folder.write("old", documents::four_maps("old"));
    folder.write("new", "<maps><include file='part'/><map name='without content'/></maps>");
    folder.write("part", documents::four_maps("new"));
    folder.write("bad",
                 "<maps><include file='part'/><include file='prat'/><include file='../x'/><map name='newmap'>"
                 "<item naem='1'/><item name='a'/><item name='a'/></map></x></maps>");
    map_collection old;
    ASSERT_EQ(old.load(folder.path("old")).type(), map_error_t::no_error);
    const std::string old_answers = documents::all_answers(old, "");
    check_options bounded;
    bounded.within = folder.system_path("");
    bounded.suggest_files = true;
    for (const check_options& options : {check_options(), bounded}) {
        for (const std::string name : {"bad", "new"}) {
            const std::string expected = check_maps(folder.system_path(name), options).text();
            bool is_reached = true;
            for (long call = 0; is_reached; ++call) {
                map_collection maps = old;
                load_report report;
                bool is_done = false;
                const auto operation = [&] {
                    report = load_maps(maps, folder.system_path(name), options);
                    is_done = true;
                };
                is_reached = fails(call, true, operation, false);
                EXPECT_TRUE(is_done ? report.text() == expected : is_reached) << call << report.text();
                EXPECT_EQ(documents::all_answers(maps, "") == old_answers, !is_done || name == "bad") << call;
            }
        }
    }
}

// In a table with an index and in one without, into which nothing or something was loaded before. Also if an item is a
// duplicate, and if iterators were asked for.
TEST(Failures, OfMemoryLeaveTheFirstItemsInATable)
{
    struct opened : map_t
    {
        using map_t::begin;
        using map_t::m_items;
    };
    const auto document = [](const std::string& keys) {
        std::string text = "<maps>";
        for (const char key : keys) text += "<item name='" + std::string(40, key) + "'/><arg name='text &amp; text'/>";
        return text + "</maps>";
    };
    const std::string before = "zyx";
    for (const std::string order : {"hcagbdfe", "hcagbdhe", "hcagbdfeqponmlkjirst", "hcagbdfeqponmlkjirsp"}) {
        for (const int state : {0, 1, 2}) {
            bool is_reached = true;
            for (long call = 0; is_reached; ++call) {
                const auto parser = documents::parsed(document(order), 1);
                opened table;
                if (state != 0) table.load("t", *documents::parsed(document(before), 1));
                if (state == 2) table.begin();
                is_reached = fails(call, true, [&] { table.load("t", *parser); });
                std::string found;
                table.m_items.store().for_each([&](const stored_item& item) {
                    found += item.key().front();
                    EXPECT_TRUE(item.key() == std::string(40, found.back())) << order;
                    ustring8 text;
                    item.values().copy_to(text);
                    EXPECT_EQ(text, "text & text");
                });
                std::string all = state == 0 ? "" : before;
                for (auto key = order.begin(); key != order.end() && all.find(*key) == all.npos; ++key) all += *key;
                std::string expected = is_reached ? all.substr(0, found.size()) : all;
                if (state == 2) std::sort(expected.begin(), expected.end());
                EXPECT_EQ(found, expected) << order << ' ' << state << ' ' << call;
            }
        }
    }
}

TEST(Failures, OfMemoryAreThrownForTextsTooLargeForTheMachine)
{
    using NUVEK_2_18::parser::text_buffer;
    for (const std::size_t size : {text_buffer::largest_capacity + 1, std::size_t{PTRDIFF_MAX} + 1, SIZE_MAX}) {
        EXPECT_THROW(text_buffer{size}, std::bad_alloc) << size;
        EXPECT_THROW(text_buffer().grow(size), std::bad_alloc) << size;
    }
}

// A file with this many attributes and items, where each item leaves out all attributes but one.
TEST(Failures, OfMemoryAreNotCausedByAttributesThatAreLeftOut)
{
    std::string names;
    std::string items;
    std::string args;
    for (int i = 0; i < 8000; ++i) names += " a" + std::to_string(i) + "=''";
    for (int i = 0; i < 5000; ++i) items += "<item name='" + std::to_string(i) + "' a" + std::to_string(i) + "='x'/>";
    for (int i = 0; i < 5000; ++i) args += "<arg name='" + std::to_string(i) + "' a" + std::to_string(i) + "='x'/>";
    const documents::folder folder;
    folder.write("m", "<maps><collection_map name='m'><item name='i'" + names + "/>" + items +
                          "</collection_map><vector_collection_map name='n'><item name='i'/><arg name='r'" + names +
                          "/>" + args + "</vector_collection_map></maps>");
    const std::wstring path = folder.path("m");
    map_collection maps;
    failing_calls calls;
    memory = &calls;
    const map_error_t error = maps.load(path);
    memory = nullptr;
    EXPECT_EQ(error.type(), map_error_t::no_error);
    EXPECT_LT(calls.bytes, std::size_t{20} << 20) << "requested in all";
    ustring8 value;
    EXPECT_TRUE(maps.get_attrib("m", "4999", "a4999", value) && value == "x");
    EXPECT_TRUE(maps.get_attrib("m", "4999", "a7999", value) && value.empty());
}

#if defined(__linux__)

namespace {

// What the calls to the system do.
struct file_calls
{
    failing_calls open = {};
    failing_calls fstat = {};
    failing_calls read = {};
    int error = EIO;
    off_t claimed_size = -1;       // by fstat, if not negative
    std::size_t most = SSIZE_MAX;  // bytes in a read
    long last_read = LONG_MAX;     // reads from this one on find the end
};

thread_local file_calls* files = nullptr;

}  // namespace

extern "C" int open(const char* path, int flags, ...)
{
    if (files != nullptr && files->open.fails_now()) return errno = files->error, -1;
    return ::openat(AT_FDCWD, path, flags, 0600);
}

extern "C" int fstat(int file, struct stat* status) noexcept
{
    if (files != nullptr && files->fstat.fails_now()) return errno = files->error, -1;
    const int result = ::fstatat(file, "", status, AT_EMPTY_PATH);
    if (files != nullptr && files->claimed_size >= 0) status->st_size = files->claimed_size;
    return result;
}

extern "C" ssize_t read(int file, void* to, std::size_t size)
{
    if (files == nullptr) return ::syscall(SYS_read, file, to, size);
    if (files->read.fails_now()) return errno = files->error, -1;
    if (files->read.calls > files->last_read) return 0;
    return ::syscall(SYS_read, file, to, std::min(size, files->most));
}

TEST(Failures, OfFilesAreResults)
{
    const documents::folder folder;
    const std::string content = documents::four_maps("m");
    folder.write("m", content);
    const auto load = [&](file_calls calls) {
        map_collection maps;
        files = &calls;
        const map_error_t error = maps.load(folder.path("m"));
        files = nullptr;
        return maps.map_error_as_string(error) + ' ' + std::to_string(maps.maps().size());
    };
    const auto check = [&](file_calls calls) {
        files = &calls;
        const load_report report = check_maps(folder.system_path("m"));
        files = nullptr;
        return report.errors() == 1 ? report.findings().front().rule : std::to_string(report.maps().size());
    };
    const failing_calls at_once{0, 0, true};
    EXPECT_EQ(check({at_once}), "missing-file");
    EXPECT_EQ(check({{}, at_once}), "missing-file");
    EXPECT_EQ(load({at_once}), "file_not_found 0");
    EXPECT_EQ(load({{}, at_once}), "file_not_found 0");
    EXPECT_EQ(load({{}, {}, {0, 0, true}, EINTR}), "no_error 4") << "an interrupted read is tried again";
    // The size that the file claims is wrong, or no longer true.
    for (const off_t claimed : {off_t{0}, off_t{1}, static_cast<off_t>(content.size()) * 2, off_t{1} << 60}) {
        EXPECT_EQ(load({{}, {}, {}, EIO, claimed}), "no_error 4") << claimed;
        EXPECT_EQ(load({{}, {}, {}, EIO, claimed, 7}), "no_error 4") << claimed;
    }
    // In pieces of seven bytes: a read that fails, and an end that comes too early.
    const auto reads = static_cast<long>((content.size() + 6) / 7);
    for (long call = 1; call <= reads; ++call) {
        EXPECT_EQ(load({{}, {}, {0, call, true}, EIO, -1, 7}), "invalid_format 0") << call;
        EXPECT_EQ(check({{}, {}, {0, call, true}, EIO, -1, 7}), "unreadable-file") << call;
        // A document without its last end tag has an open root, and is read.
        const std::string got = content.substr(0, static_cast<std::size_t>(call) * 7);
        const bool is_enough = got.size() >= content.rfind("</maps>") && (got.back() == '>');
        EXPECT_EQ(load({{}, {}, {}, EIO, -1, 7, call}) == "no_error 4", is_enough) << call;
    }
}

// Also on 32-bit machines. The date is in 2096, the size 3 GiB; only the first bytes are read.
TEST(Files, OfAnyDateAndSizeAreOpened)
{
    const documents::folder folder;
    folder.write("m", documents::four_maps("m"));
    const std::string path = folder.system_path("m").string();
    const timespec dates[] = {{4000000000, 0}, {4000000000, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), dates, 0), 0);
    map_collection maps;
    EXPECT_EQ(maps.load(folder.path("m")).type(), map_error_t::no_error);
    ASSERT_EQ(::truncate(path.c_str(), off_t{3} << 30), 0);
    check_options options;
    options.max_bytes = 1000;
    file_calls calls;
    calls.most = 2000;
    files = &calls;
    const load_report report = check_maps(folder.system_path("m"), options);
    files = nullptr;
    ASSERT_EQ(report.errors(), 1U);
    EXPECT_EQ(report.findings().front().rule, "limit-reached");
}

#endif
