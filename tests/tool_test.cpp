// The command-line tool, run by the shell as a user runs it.
#include <sys/wait.h>

#include <cstdlib>
#include <iterator>
#include <nlohmann/json.hpp>

#include "documents.h"

namespace {

// Commands as the shell takes them, in the folder of the maps; $T is the tool. The outcome is the exit code, standard
// output and standard error, with line ends as "|".
using rows = std::vector<documents::group>;

const std::string fault_result = "fault: duplicate_item, line 3; run: data_mapper check fault";

struct map_files : documents::folder
{
    map_files()
    {
        write("kinds", R"(<maps>
<map name="greeting"><item name="fr"/><arg name="bonjour"/><item name="it"/></map>
<vector_map name="toppings"><item name="bianca"/><item name="napoli"/><arg name="a"/><arg name="b"/></vector_map>
<collection_map name="rooms"><item name="atrium" seats="2" floor="0"/><item name="attic" floor="4"/></collection_map>
<vector_collection_map name="trains"><item name="Basel"/><arg name="IC" to="Bern"/><arg name="RE"/></vector_collection_map>
</maps>)");
        write("fault", R"(<maps>
<map name="list"><item name="-1"/><arg name="x"/></map>
<map name="m"><item name="k"/><item name="k"/></map>
</maps>)");
        write("missing_part", R"(<maps><include file="part"/><map name="texts_fr"><item name="a"/></map></maps>)");
        write("warned", "<maps><map name='empty'></map></maps>");
        write("broken", "<maps>\n<a/>&x;</maps>");
        write("cut", "<maps>");
        write("large", documents::four_maps(std::string(100000, 'm')));
    }
};

const map_files& files()
{
    static const map_files written;
    return written;
}

std::string content(const std::string& name)
{
    std::ifstream file(files().system_path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string run(const std::string& command)
{
    const std::string setting = "cd '" + files().system_path("").string() + "'; T='" DATA_MAPPER4_TOOL "'; ";
    const int status = std::system((setting + "unset NO_COLOR; { " + command + "\n} >output 2>errors").c_str());
    return std::to_string(WEXITSTATUS(status)) + ' ';
}

std::string outcome(const std::string& command)
{
    std::string text = run(command);
    text += content("output") + content("errors");
    std::replace(text.begin(), text.end(), '\n', '|');
    return text;
}

// With the output as JSON without white space.
std::string json_outcome(const std::string& command)
{
    const std::string code = run(command);
    return code + nlohmann::ordered_json::parse(content("output"), nullptr, false).dump() + content("errors");
}

// Only as much of the outcome as the row has.
void check_starts(const rows& groups)
{
    for (const documents::group& each : groups) {
        documents::check({each}, [&](const auto& input) { return outcome(input).substr(0, each.expected.size()); });
    }
}

}  // namespace

TEST(Tool, ChecksFilesAndCountsWhatIsWrong)
{
    documents::check({{"0 1 file, 4 maps, 7 items: no errors|", {"$T check kinds"}},
                      {"0 1 file, 8 maps, 14 items: no errors|", {"$T check kinds kinds"}},
                      {"0 findings not shown: 1|1 file, no maps, no items: no errors, 1 warning|",
                       {"$T check --max-findings 0 warned", "$T check --within . --max-findings 0 warned"}},
                      {"1 findings not shown: 1|1 file, 1 map, 1 item: 1 error|", {"$T check --max-findings 0 fault"}}},
                     outcome);
    check_starts({
        {"0 warned:1:", {"$T check warned", "$T check --color auto warned", "$T check --format text warned"}},
        {"1 warned:1:", {"$T check --werror warned"}},
        {"1 fault:3:43: error: ", {"$T check fault", "NO_COLOR= $T check fault", "$T check --color never kinds fault"}},
        {"0 \x1b[", {"$T check --color always warned", "NO_COLOR=1 $T check --color always warned"}},
        {"2 missing: error: ", {"$T check missing kinds"}},
        {"2 kinds: error: \"kinds\" is outside", {"mkdir -p d; $T check --within d kinds"}},
        {"1 kinds:2:1: error: the limit of 2 values is exceeded", {"$T check --max-values 2 kinds"}},
        {"2 kinds: error: the limit of ", {"$T check --max-bytes 100 kinds", "$T check --max-files 0 kinds"}},
        {"0 1 file", {"$T check --max-bytes 018446744073709551615 kinds"}},
        {"2 sparse: error: the limit of 67108864 bytes is exceeded", {"truncate -s 1T sparse; $T check sparse"}},
        {"2 b\xEF\xBF\xBD: error: ", {"$T check \"$(printf 'b\\377')\""}},
    });
}

TEST(Tool, ReportsFindingsAsJson)
{
    documents::check(
        {{R"(1 {"version":1,"errors":1,"warnings":0,"masters":[{"file":"fault","complete":true,"left_out":0,)"
          R"("load":{"code":"duplicate_item","line":3},)"
          R"("files":[{"file":"fault","ended":"duplicate_item","line":3,"included_at":null}],)"
          R"("maps":[{"name":"list","kind":"MT_SIMPLE","items":1,"declared":{"file":"fault","line":2,"column":1}}],)"
          R"("findings":[{"severity":"error","rule":"duplicate-item","code":"duplicate_item",)"
          R"("message":"item \"k\" is declared twice in map \"m\"","hint":null,)"
          R"("where":{"file":"fault","line":3,"column":43,"end_line":3,"end_column":44},)"
          R"("source":{"text":"<map name=\"m\"><item name=\"k\"/><item name=\"k\"/></map>","column":1},)"
          R"("related":[{"message":"first declared here",)"
          R"("where":{"file":"fault","line":3,"column":27,"end_line":3,"end_column":28}}],"included_by":[]}]}]})",
          {"$T check --format json fault"}}},
        json_outcome);
    check_starts(
        {{"2 {|  \"version\": 1,|  \"errors\": 1,|  \"warnings\": 0,|  \"masters\": [|    {|"
          "      \"file\": \"b\xEF\xBF\xBD\",|",
          {"$T check --format json \"$(printf 'b\\377')\""}}});
}

TEST(Tool, ListsMaps)
{
    documents::check({{"0 greeting  MT_SIMPLE             2  -                 kinds:2|"
                       "rooms     MT_COLLECTION         2  name,seats,floor  kinds:4|"
                       "toppings  MT_VECTOR             2  -                 kinds:3|"
                       "trains    MT_VECTOR_COLLECTION  1  name,to           kinds:5|",
                       {"$T list kinds", "$T list --format text kinds"}},
                      {"1 list  MT_SIMPLE  1  -  fault:2|" + fault_result + "|", {"$T list fault"}},
                      {"2 missing: error: no such file, or it cannot be opened|",
                       {"$T list missing", "$T get missing m", "$T dump missing", "$T nodes missing"}}},
                     outcome);
    documents::check({{R"(1 {"version":1,"maps":[{"name":"list","kind":"MT_SIMPLE","items":1,)"
                       R"("declared":{"file":"fault","line":2,"column":1},"keys":[]}]})" +
                           fault_result + "\n",
                       {"$T list --format json fault"}}},
                     json_outcome);
}

TEST(Tool, GetsWhatAHostWouldGet)
{
    documents::check(
        {{"0 fr|it|", {"$T get kinds greeting"}},
         {"0 bonjour|", {"$T get kinds greeting fr"}},
         {"0 |", {"$T get kinds greeting it"}},
         {"0 a|b|", {"$T get kinds toppings napoli"}},
         {"0 ", {"$T get kinds toppings bianca"}},
         {"0 name: atrium|seats: 2|floor: 0|", {"$T get kinds rooms atrium"}},
         {"0 4|", {"$T get kinds rooms attic floor"}},
         {"0 name: IC|to: Bern||name: RE|to: |", {"$T get kinds trains Basel"}},
         {"0 Bern||", {"$T get kinds trains Basel to"}},
         {"1 x|" + fault_result + "|", {"$T get fault list -- -1"}},
         {"1 no map \"greting\"; did you mean \"greeting\"?|", {"$T get kinds greting fr"}},
         {"1 no map \"\\u{1B}\"; run: data_mapper list kinds|", {"$T get kinds \"$(printf '\\033')\""}},
         {"1 no item \"Fr\" in map \"greeting\"; did you mean \"fr\"?|", {"$T get kinds greeting Fr"}},
         {"1 no item \"\" in map \"rooms\"; run: data_mapper get kinds rooms|", {"$T get kinds rooms ''"}},
         {"1 no attribute \"seat\" in map \"rooms\"; did you mean \"seats\"?|", {"$T get kinds rooms atrium seat"}},
         {"1 no attribute \"x\" in map \"trains\"; it has: name, to|", {"$T get kinds trains Basel x"}},
         {"1 no attribute \"x\" in map \"greeting\"; it has none|", {"$T get kinds greeting it x"}}},
        outcome);
    documents::check({{R"(0 ["fr","it"])", {"$T get --format json kinds greeting"}},
                      {R"(0 "")", {"$T get --format json kinds greeting it"}},
                      {"0 []", {"$T get --format json kinds toppings bianca"}},
                      {R"(0 ["Bern",""])", {"$T get --format json kinds trains Basel to"}}},
                     json_outcome);
}

TEST(Tool, DumpsEverythingThatIsLoaded)
{
    documents::check(
        {{R"(0 {"version":1,"maps":{"greeting":{"kind":"MT_SIMPLE","keys":[],"items":{"fr":"bonjour","it":""}},)"
          R"("rooms":{"kind":"MT_COLLECTION","keys":["name","seats","floor"],"items":{)"
          R"("atrium":{"floor":"0","name":"atrium","seats":"2"},)"
          R"("attic":{"floor":"4","name":"attic","seats":""}}},)"
          R"("toppings":{"kind":"MT_VECTOR","keys":[],"items":{"bianca":[],"napoli":["a","b"]}},)"
          R"("trains":{"kind":"MT_VECTOR_COLLECTION","keys":["name","to"],"items":{)"
          R"("Basel":[{"name":"IC","to":"Bern"},{"name":"RE","to":""}]}}}})",
          {"$T dump kinds"}},
         {R"(0 {"version":1,"maps":{}})", {"$T dump warned"}}},
        json_outcome);
}

TEST(Tool, SaysThatTheFilesAreFaultyWithItsAnswer)
{
    const std::string error = "missing_part: 1 error; run: data_mapper check missing_part|";
    documents::check(
        {{"1 a|" + error, {"$T get missing_part texts_fr"}},
         {"1 texts_fr  MT_SIMPLE  1  -  missing_part:1|" + error, {"$T list missing_part"}},
         {"1 " + error, {"$T dump missing_part >/dev/null"}},
         {"1 " + error + "no map \"texts_de\"; it may not have been loaded|", {"$T get missing_part texts_de"}},
         {"1 " + error + "no item \"b\" in map \"texts_fr\"; it may not have been loaded|",
          {"$T get missing_part texts_fr b"}}},
        outcome);
}

TEST(Tool, PrintsNodesUpToAFault)
{
    check_starts({{"1 Start node tag:  maps, line:  1, status = incomplete|Node tag:  a, line:  2, status = no_error|"
                   "broken:2:5: error: ",
                   {"$T nodes broken"}},
                  {"1 Start node tag:  maps, line:  1, status = incomplete|cut: error: ", {"$T nodes cut"}}});
    documents::check({{"0 Closing node tag:  maps, line:  1, status = no_error|", {"$T nodes warned | tail -n 1"}}},
                     outcome);
}

TEST(Tool, EndsWithTroubleIfItCannotWrite)
{
    documents::check({{"2 data_mapper: cannot write the output: No space left on device|",
                       {"$T check kinds >/dev/full", "$T dump large >/dev/full", "$T --help >/dev/full"}},
                      // A reader that has seen enough is no trouble, whatever the system says of it.
                      {"0 {", {"$T dump large | head -c 1", "trap '' PIPE; $T dump large | head -c 1"}},
                      {"0 S", {"$T nodes large | head -c 1", "trap '' PIPE; $T nodes large | head -c 1"}}},
                     outcome);
}

TEST(Tool, ExplainsItsUse)
{
    documents::check({{"0 1|",
                       {"$T --help | grep -c '^Example: '", "$T --version | grep -c '^data_mapper [0-9.]*$'",
                        "$T check --help | grep -c '^Example: '", "$T list --help | grep -c '^Example: '",
                        "$T get --help | grep -c '^Example: '", "$T dump --help | grep -c '^Example: '",
                        "$T nodes --help | grep -c '^Example: '"}}},
                     outcome);
    check_starts({{"2 data_mapper: ",
                   {"$T", "$T \"$(printf '\\377')\"", "$T check", "$T check --format xml kinds",
                    "$T check --max-findings -1 kinds", "$T check --max-bytes '' kinds",
                    "$T check --max-bytes 18446744073709551616 kinds", "$T check --max-files 1x kinds",
                    "$T check --within missing kinds", "$T check --within '' kinds", "$T list kinds kinds",
                    "$T get kinds", "$T dump --format json kinds", "$T nodes --unknown kinds"}}});
}
