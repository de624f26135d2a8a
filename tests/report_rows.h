// The rules of a check by example. report_test.cpp checks the rows, and errors_page.cpp makes docs/errors.md of them.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "data_mapper/load_report.h"
#include "documents.h"

namespace report_rows {

using namespace data_mapper4;

// Names and contents, the master file first.
using files = std::vector<std::pair<std::string, std::string>>;

struct row
{
    std::string rule;
    std::string sentence = {};  // empty if the row above has it
    files wrong = {};
    std::string findings = {};
    std::string before = {};     // a part of one of the files,
    std::string after = {};      // and what it is replaced by to mend it
    check_options options = {};  // `within` is relative to the files' folder
};

const check_options with_names = {1000, 10000, 1 << 30, {}, true};
const check_options in_maps = {1000, 10000, 1 << 30, "maps"};
const check_options one_file = {1000, 1};

inline files world(const std::string& content, const files& others = {})
{
    files all = {{"world.xml", content}};
    all.insert(all.end(), others.begin(), others.end());
    return all;
}

// A file of maps with this content, and one of a map with this content.
inline std::string maps(const std::string& content)
{
    return "<maps>\n  " + content + "\n</maps>\n";
}

inline std::string map(const std::string& kind, const std::string& content)
{
    return maps('<' + kind + " name=\"m\">\n    " + content + "\n  </" + kind + '>');
}

const std::string french = maps(R"(<map name="fr"><item name="yes"/><arg name="oui"/></map>)");
const std::string include = R"(<include file="french.xml"/>)";

// A file that Linux refuses to read.
const std::string proc_mem = "../../../../../../../../proc/self/mem";
const files unreadable = std::filesystem::exists("/proc/self/mem") && std::filesystem::path::preferred_separator == '/'
                             ? world(maps("<include file=\"" + proc_mem + "\"/>"), {{"french.xml", french}})
                             : files();

// What `check` says of the first file, without the path of the folder that they are all in.
template <class checker>
std::string outcome(const files& set, check_options options, checker check)
{
    const documents::folder home;
    for (const auto& [name, content] : set) home.write(name, content);
    if (options.within) options.within = home.system_path(options.within->u8string());
    const std::filesystem::path root = home.system_path("");
    std::string text = check(home.system_path(set.front().first), options);
    for (const std::string& folder : {root.u8string(), root.generic_u8string()}) {
        for (std::size_t at = 0; (at = text.find(folder, at)) != std::string::npos;) text.erase(at, folder.size());
    }
    return text;
}

// Empty if the part to replace is in no file.
inline files mended(const row& each)
{
    files set = each.wrong;
    for (auto& [name, content] : set) {
        const std::size_t at = content.find(each.before);
        if (at == std::string::npos) continue;
        content.replace(at, each.before.size(), each.after);
        return set;
    }
    return {};
}

// In the order of the rules.
const std::vector<row> rows = {
    {"missing-file", "A file does not exist, or cannot be opened. Load goes on without it.",
     world(maps(R"(<include file="frensh.xml"/>)"), {{"french.xml", french}}),
     R"(world.xml:2:18-2:28 error 1 "frensh.xml" does not exist; did you mean "french.xml"? [missing-file])", "frensh",
     "french", with_names},
    {"outside-folder",
     "A file is outside the folder that the caller of the check allows, or a link leads out of it. It is neither "
     "opened nor "
     "looked for. Without that limit, load reads it.",
     {{"maps/world.xml", maps(R"(<include file="../french.xml"/>)")},
      {"french.xml", french},
      {"maps/french.xml", french}},
     R"(maps/world.xml:2:18-2:31 error 1 "../french.xml" is outside the folder that files are restricted to )"
     "[outside-folder]",
     "../",
     "",
     in_maps},
    {"include-cycle",
     "A file includes itself, directly or through others. Load enters it again only if a map was loaded in between.",
     world(maps(include), {{"french.xml", maps(R"(<include file="world.xml"/>)")}}),
     R"(french.xml:2:18-2:27 error 2 "world.xml" includes "french.xml" includes "world.xml" [include-cycle] = a )"
     "file must not include itself, not even through others | world.xml:2:3-2:11 include",
     R"(<include file="world.xml"/>)", R"(<map name="fr"><item name="yes"/></map>)"},
    {"included-twice", "A file is included again. Load ends the second reading at the first map, which is a duplicate.",
     world(maps(include + "\n  " + include), {{"french.xml", french}}),
     R"(world.xml:3:18-3:28 error 6 "french.xml" is included again; its maps are loaded already [included-twice] )"
     "= remove one of the includes | world.xml:2:3-2:11 first included here",
     include + "\n  ", ""},
    {"limit-reached",
     "There are more files, bytes or values of maps than the options of the check allow. Load has no such limits.",
     world(maps(include), {{"french.xml", french}}),
     "world.xml:2:3-2:11 error 0 the limit of 1 file is exceeded; nothing further is read [limit-reached] = raise "
     "check_options::max_files, or --max-files of the tool ...",
     include, "", one_file},
    {"unportable-path",
     "An include is found on this system but not on others, for its letter case or a backslash. Load follows it."},
    {"unreadable-file", "A file is there but the system fails to read it. Load goes on without it.", unreadable,
     "../../../../../../../../proc/self/mem:1:1-1:1 error 2 the file cannot be read [unreadable-file] | "
     "world.xml:2:3-2:11 include",
     proc_mem, "french.xml"},
    {"bad-encoding",
     "A file declares an encoding that is not supported, or that it is not in. Load reads nothing of it.",
     world("<?xml version=\"1.0\" encoding=\"windows-1252\"?>\n<maps/>\n"),
     R"(world.xml:1:31-1:43 error 2 the encoding "windows-1252" is not supported [bad-encoding] = convert the )"
     "file to UTF-8",
     "windows-1252", "UTF-8"},
    {"bad-encoding", "", world("<?xml version=\"1.0\" encoding=\"UTF-16\"?>\n<maps/>\n"),
     R"(world.xml:1:31-1:37 error 2 the file declares the encoding "UTF-16" but is not in it [bad-encoding] = )"
     "declare the encoding in which the file is saved",
     "16", "8"},
    {"bad-character",
     "A byte or character is not allowed in XML, or not in the file's encoding. Load reads nothing of the file.",
     world(map("map", "<item name=\"caf\xE9\"/>")),
     "world.xml:3:20-3:20 error 2 bytes that are not UTF-8; if the file is Latin-1, declare "
     R"(encoding="ISO-8859-1" [bad-character])",
     "<maps>", "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n<maps>"},
    {"bad-character", "", world(map("map", "<item name=\"quote\"/><arg name=\"\x93yes\x94\"/>")),
     "world.xml:3:36-3:36 error 2 bytes that are not UTF-8; the file looks like windows-1252 and must be converted to "
     "UTF-8 [bad-character]",
     "\x93yes\x94", "&#8220;yes&#8221;"},
    {"bad-markup", "Something is not well-formed XML. Load reads nothing of the file.",
     world(map("map", R"(<item name="Marks & Sons"/>)")),
     "world.xml:3:23-3:24 error 2 & does not begin a reference here [bad-markup] = for the character itself write "
     "&amp;",
     "&", "&amp;"},
    {"bad-markup", "", world(map("map", R"(<item name="<5"/>)")),
     "world.xml:3:17-3:18 error 2 < is not allowed in an attribute value [bad-markup] = for the character itself write "
     "&lt;",
     "<5", "&lt;5"},
    {"bad-markup", "", world(map("map", "<item name=fr/>")),
     "world.xml:3:16-3:17 error 2 expected a quote around the attribute value [bad-markup] = write attributes as "
     R"(name="value")",
     "=fr", R"(="fr")"},
    {"bad-markup", "", world(maps("") + french),
     "world.xml:4:1-4:2 error 2 a second root element [bad-markup] = everything belongs between <maps> and </maps>",
     "</maps>\n<maps>\n", ""},
    {"bad-markup", "", world("\n<?xml version=\"1.0\"?>\n<maps/>\n"),
     "world.xml:2:1-2:2 error 2 an XML declaration must be the first thing in the file [bad-markup] = remove what "
     "precedes it, white space included",
     "\n", ""},
    {"end-tag-mismatch", "An end tag does not belong to the element that is open. Load reads nothing of the file.",
     world(map("map", R"(<item name="fr">)")),
     "world.xml:4:3-4:8 error 2 </map> does not close <item>, opened at line 3 [end-tag-mismatch] = write <item .../> "
     "| world.xml:3:5-3:10 <item> is opened here",
     "fr\">", "fr\"/>"},
    {"end-tag-mismatch", "", world(french + "</map>\n"),
     "world.xml:4:1-4:6 error 2 </map> closes nothing: no element is open [end-tag-mismatch]", "</maps>\n</map>\n",
     "</maps>\n"},
    {"repeated-attribute", "An element has two attributes of the same name. Load reads nothing of the file.",
     world(map("collection_map", R"(<item name="atrium" seats="200" seats="100"/>)")),
     R"(world.xml:3:37-3:42 error 2 attribute "seats" is given twice [repeated-attribute])", R"( seats="100")", ""},
    {"unknown-entity", "A reference names an entity that XML does not define. Load reads nothing of the file.",
     world(map("map", R"(<item name="caf&eacute;"/>)")),
     "world.xml:3:20-3:28 error 2 unknown entity &eacute;; write &#233; [unknown-entity]", "&eacute;", "&#233;"},
    {"unknown-entity", "", world(map("map", R"(<item name="caf&e;"/>)")),
     "world.xml:3:20-3:23 error 2 unknown entity &e; [unknown-entity] = XML knows only &lt; &gt; &amp; &quot; and "
     "&apos;",
     "&e;", "e"},
    {"no-root", "A file contains no element. Load reads nothing of it.", world("<!-- nothing yet -->\n"),
     "world.xml:2:1-2:1 error 2 there is no element in this file [no-root] = a file of maps begins with <maps>", "\n",
     "\n<maps/>\n"},
    {"unclosed-element",
     "A file ends before an element is closed. Load reads it as far as it goes; right after an item, that is a fault.",
     world("<maps>\n  <map name=\"m\">\n    <item name=\"fr\"/>\n"),
     "world.xml:4:1-4:1 error 2 the file ends before </map> [unclosed-element] | world.xml:2:3-2:7 <map> is opened "
     "here",
     "/>\n", "/>\n  </map>\n</maps>\n"},
    {"wrong-root", "The root of a file is not `<maps>`. Load reads nothing of the file.", world("<Maps/>\n"),
     "world.xml:1:1-1:6 error 2 the root element is <Maps>, not <maps> [wrong-root]", "M", "m"},
    {"wrong-root", "", world("<map name=\"m\">\n  <item name=\"fr\"/>\n</map>\n"),
     "world.xml:1:1-1:5 error 2 the root element is <map>, not <maps> [wrong-root] = write <maps> and </maps> around "
     "the maps of a file",
     "<map name=\"m\">\n  <item name=\"fr\"/>\n</map>\n", map("map", "<item name=\"fr\"/>")},
    {"nested-maps", "`<maps>` is inside another element. Load takes it for the end of the file.",
     world(maps("<maps/>\n  <map name=\"m\"><item name=\"fr\"/></map>")),
     "world.xml:2:3-2:8 error 0 <maps> inside <maps>; load reads nothing after it [nested-maps]", "<maps/>\n  ", ""},
    {"unknown-element", "The format knows no element of that name. Load ends the map there, and the file.",
     world(maps(R"(<vectormap name="m"><item name="fr"/></vectormap>)")),
     "world.xml:2:3-2:13 error 2 unknown element <vectormap>; did you mean <vector_map>? [unknown-element]",
     R"(<vectormap name="m"><item name="fr"/></vectormap>)", R"(<vector_map name="m"><item name="fr"/></vector_map>)"},
    {"unknown-element", "", world(map("map", R"(<item name="fr"/><comment/>)")),
     "world.xml:3:22-3:30 error 2 unknown element <comment> [unknown-element] = <map> contains items and args",
     "<comment/>", ""},
    {"unknown-element", "", world(map("map", R"(<Item name="fr"/>)")),
     "world.xml:3:5-3:10 error 2 unknown element <Item>; did you mean <item>? [unknown-element]", "I", "i"},
    {"outside-map", "An item or an arg is not in a map. Load ends the file there.", world(maps(R"(<item name="fr"/>)")),
     "world.xml:2:3-2:8 error 2 <item> is not inside a map [outside-map]", R"(<item name="fr"/>)",
     R"(<map name="m"><item name="fr"/></map>)"},
    {"map-inside-map",
     "A map is inside another. Load ends the outer map there; an item after the inner one is a fault.",
     world(map("map", R"(<item name="fr"/><map name="n"><item name="it"/></map>)")),
     "world.xml:3:22-3:26 error 0 <map> inside <map>; load ends that map here [map-inside-map] = maps follow one "
     "another; none contains another",
     R"(<map name="n"><item name="it"/></map>)", R"(</map><map name="n"><item name="it"/>)"},
    {"include-inside-map",
     "An include is inside a map. Load ends the map there and follows the include; an item after it is a fault.",
     world(map("map", R"(<item name="it"/>)" + include), {{"french.xml", french}}),
     "world.xml:3:22-3:30 error 0 <include> inside <map>; load ends the map here [include-inside-map] = includes "
     "belong between the maps",
     include, ""},
    {"nested-element", "An element is inside an item or an arg. Load leaves out the map and ends the file.",
     world(map("map", R"(<item name="fr"><item name="it"/></item>)")),
     "world.xml:3:21-3:26 error 2 <item> inside <item>, which must be empty [nested-element] = items and args "
     "follow one another; none contains another",
     R"(<item name="fr"><item name="it"/></item>)", R"(<item name="fr"/><item name="it"/>)"},
    {"arg-inside-item", "An arg is inside its item instead of after it. Load leaves out the map and ends the file.",
     world(map("map", R"(<item name="fr"><arg name="oui"/></item>)")),
     "world.xml:3:21-3:25 error 2 an <arg> follows its <item>, it does not go inside it [arg-inside-item] = write "
     "<item .../><arg .../>",
     R"("fr"><arg name="oui"/></item>)", R"("fr"/><arg name="oui"/>)"},
    {"arg-without-item", "An arg has no item before it in its map. Load ends the map there, and the file.",
     world(map("vector_map", R"(<arg name="tomato"/>)")),
     "world.xml:3:5-3:9 error 2 an <arg> follows its <item>; there is none here [arg-without-item]", "<arg",
     R"(<item name="margherita"/><arg)"},
    {"arg-in-collection-map",
     "An arg is in a collection map, whose items have only attributes. Load ends the map there, and the file.",
     world(map("collection_map", R"(<item name="atrium" seats="200"/><arg name="floor"/>)")),
     "world.xml:3:38-3:42 error 2 a <collection_map> has no args; its items have attributes [arg-in-collection-map] = "
     "write the values as further attributes of the <item>",
     R"(/><arg name="floor"/>)", R"( floor="0"/>)"},
    {"second-arg", "An item of a simple map has more than one arg. Load ends the map there, and the file.",
     world(map("map", R"(<item name="fr"/><arg name="oui"/><arg name="si"/>)")),
     R"(world.xml:3:39-3:43 error 2 item "fr" has an <arg> already; in a <map> each item has only one )"
     "[second-arg] = load stops here; a <vector_map> has any number of args for an item",
     R"(<arg name="si"/>)", ""},
    {"include-content", "An include contains an element. Load follows the include and then ends the file.",
     world(maps(R"(<include file="french.xml"><item name="it"/></include>)"), {{"french.xml", french}}),
     "world.xml:2:30-2:35 error 2 <item> inside <include>, which must be empty [include-content] = write <include "
     R"(file="..."/>)",
     R"(><item name="it"/></include>)", "/>"},
    {"text-in-element", "An item or an arg contains text. Load leaves out the map and ends the file.",
     world(map("map", R"(<item name="fr">oui</item>)")),
     "world.xml:3:21-3:24 error 2 <item> must not contain text [text-in-element] = "
     R"(write <arg name="..."/> after the item)",
     R"("fr">oui</item>)", R"("fr"/><arg name="oui"/>)"},
    {"text-in-element", "", world(map("map", R"(<item name="fr"/><arg name="oui">yes</arg>)")),
     "world.xml:3:38-3:41 error 2 <arg> must not contain text [text-in-element] = write <arg "
     R"(name="..."/>)",
     ">yes</arg>", "/>"},
    {"ignored-text", "There is text between elements. Load ignores it.", world(map("map", R"(<item name="fr"/> oui)")),
     R"(world.xml:3:23-3:26 error 0 the text "oui" is ignored; <map> contains only elements [ignored-text])", " oui",
     R"(<arg name="oui"/>)"},
    {"missing-name", "A map, an include, an item or an arg lacks its name. Load leaves out the map and ends the file.",
     world(map("map", "<item/>")),
     R"(world.xml:3:5-3:10 error 2 <item> needs the attribute "name" [missing-name] = write <item name="..."/>)",
     "<item/>", R"(<item name="fr"/>)"},
    {"nameless-map", "A map element has neither a name nor content. Load skips it.", world(maps("<map/>")),
     "world.xml:2:3-2:7 error 0 <map> has no name and is skipped [nameless-map]", "<map/>", ""},
    {"name-not-first",
     "The name of an item or arg is not its first attribute. Load leaves out the map and ends the file.",
     world(map("collection_map", R"(<item seats="200" name="atrium"/>)")),
     R"(world.xml:3:23-3:27 error 2 "name" must be the first attribute of <item> [name-not-first])",
     R"(seats="200" name="atrium")", R"(name="atrium" seats="200")"},
    {"empty-name",
     "The name of a map or an item, or the path of an include, is empty. Load leaves out the map and ends the file.",
     world(map("map", R"(<item name=""/>)")),
     R"(world.xml:3:16-3:18 error 2 "name" of <item> must not be empty [empty-name])", R"("")", R"("fr")"},
    {"empty-text", "An arg of a vector map is empty. Load leaves out the map; if no item follows, it ends the file.",
     world(map("vector_map", R"(<item name="fr"/><arg name=""/>)")),
     R"(world.xml:3:32-3:34 error 2 "name" of <arg> must not be empty [empty-text])", R"("")", R"("oui")"},
    {"unexpected-attribute",
     "An element has an attribute that it may not have. Load leaves out the map and ends the file.",
     world(map("map", R"(<item nmae="fr"/>)")),
     R"(world.xml:3:11-3:15 error 2 "nmae" is not an attribute of <item>; did you mean "name"? )"
     "[unexpected-attribute]",
     "nmae", "name"},
    {"unexpected-attribute", "", world(map("map", R"(<item name="fr" text="oui"/>)")),
     R"(world.xml:3:21-3:25 error 2 "text" is not an attribute of <item>, which has only "name" )"
     "[unexpected-attribute] = the items of a <collection_map> have any attributes",
     R"( text="oui"/>)", R"(/><arg name="oui"/>)"},
    {"unexpected-attribute", "", world("<maps version=\"1\"/>\n"),
     R"(world.xml:1:7-1:14 error 2 "version" is not an attribute of <maps>, which has none [unexpected-attribute])",
     R"( version="1")", ""},
    {"unknown-attribute",
     "The map's first item or set does not have this attribute. Load leaves out the map and ends the file.",
     world(map("collection_map", R"(<item name="atrium" seats="200"/><item name="attic" seat="4"/>)")),
     R"(world.xml:3:57-3:61 error 3 "seat" is not an attribute of this map (name, seats); did you mean "seats"? )"
     "[unknown-attribute] | world.xml:3:5-3:10 the attributes of the map are named here",
     "seat=", "seats="},
    {"duplicate-item", "Two items of a map have the same name. Load leaves out the map and ends the file.",
     world(map("map", R"(<item name="fr"/><item name="it"/><item name="fr"/>)")),
     R"(world.xml:3:51-3:53 error 4 item "fr" is declared twice in map "m" [duplicate-item] | world.xml:3:17-3:19 )"
     "first declared here",
     R"("fr"/>)"
     "\n",
     R"("es"/>)"
     "\n"},
    {"duplicate-map",
     "Two maps have the same name, whatever their kinds and files. Load ends the file at the second one.",
     world(maps(include + R"(<vector_map name="fr"><item name="si"/></vector_map>)"), {{"french.xml", french}}),
     R"(world.xml:2:49-2:51 error 6 map "fr" is declared twice [duplicate-map] | french.xml:2:14-2:16 first )"
     "declared here",
     R"("fr")", R"("it")"},
    {"empty-map", "A map has no content. Load skips it, and its name remains free.", world(maps(R"(<map name="m"/>)")),
     R"(world.xml:2:3-2:7 warning 0 map "m" has no content and is not loaded [empty-map])", R"(<map name="m"/>)",
     R"(<map name="m"><item name="fr"/></map>)"},
};

}  // namespace report_rows
