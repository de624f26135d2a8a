#include "tools/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <cstdint>
#include <iostream>
#include <optional>

#include "data_mapper/report/wording.h"
#include "data_mapper/version.h"

namespace data_mapper4::tool {

namespace {

struct command
{
    const char* name;
    const char* summary;
    const char* example;
    exit_code (*run)(const command_options& options);
};

constexpr command check_command = {"check", "Explain what is wrong with map files, each a master file of its own",
                                   "Example: data_mapper check maps/world.xml\n"
                                   "Exit codes: 0 no error, 1 an error, 2 a file that cannot be opened",
                                   run_check};
constexpr command list_command = {"list", "List the maps that are loaded, and where each is declared",
                                  "Example: data_mapper list maps/world.xml", run_list};
constexpr command get_command = {"get", "Look up what a host would get: a map's items, an item, or an attribute of it",
                                 "Example: data_mapper get maps/world.xml currencies JPY symbol\n"
                                 "Names that begin with - follow --: data_mapper get maps/world.xml offsets -- -1",
                                 run_get};
constexpr command dump_command = {"dump", "Print everything that is loaded as sorted JSON, to compare with diff",
                                  "Example: data_mapper dump maps/world.xml >world.json", run_dump};
constexpr command nodes_command = {"nodes", "Print the nodes of one file as the parser hands them out",
                                   "Example: data_mapper nodes maps/world.xml", run_nodes};

// Binds the options to strings, as they were given.
class command_line
{
public:
    command_line();
    exit_code run(std::vector<ustring8> arguments);

private:
    CLI::App* add(const command& added);
    void add_check();
    void add_get();
    void add_format(CLI::App* to);
    template <class number>
    void add_limit(CLI::App* to, const char* name, number& limit, const char* summary);
    command_options options() const;

    CLI::App m_app{"Check, list and query XML mapping files."};
    exit_code (*m_run)(const command_options& options) = nullptr;
    std::vector<std::string> m_files;
    std::vector<const CLI::Option*> m_names;
    std::string m_format = "text";
    std::string m_color = "auto";
    std::optional<std::string> m_within;
    std::string m_name;  // overwritten by each name; m_names has them all
    check_options m_limits;
    bool m_is_werror = false;
};

// Limits that a build server can live with; those of the library are for hosts that trust their files.
constexpr std::uint64_t most_bytes = std::uint64_t{64} << 20;
constexpr std::uint64_t most_values = 20000000;

command_line::command_line()
{
    m_limits.max_bytes = most_bytes;
    m_limits.max_values = most_values;
    m_app.name("data_mapper");
    m_app.set_version_flag("--version", "data_mapper " + version(), "Print the version");
    m_app.set_help_flag("--help", "Print this help");
    m_app.allow_windows_style_options(false);
    m_app.require_subcommand(1);
    m_app.footer("Example: data_mapper check maps/world.xml\nEach command has a --help of its own.");
    add_check();
    add_format(add(list_command));
    add_get();
    add(dump_command);
    add(nodes_command);
}

CLI::App* command_line::add(const command& added)
{
    CLI::App* const app = m_app.add_subcommand(added.name, added.summary);
    app->footer(added.example);
    app->callback([this, run = added.run] { m_run = run; });
    CLI::Option* const file = app->add_option("FILE", m_files, "A master file")->required()->option_text(" ");
    if (added.run != run_check) file->expected(1)->allow_extra_args(false);
    return app;
}

void command_line::add_format(CLI::App* to)
{
    to->add_option("--format", m_format, "The form of the output")
        ->check(CLI::IsMember({"text", "json"}))
        ->option_text("text|json");
}

std::string check_folder(const std::string& folder)
{
    std::error_code error;
    return std::filesystem::is_directory(std::filesystem::u8path(folder), error) ? "" : "no such folder: " + folder;
}

// Takes only decimal digits, unlike the parser, and no number that is too large.
template <class number>
number count_of(const std::string& text)
{
    number count = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, count);
    const bool is_count = error == std::errc() && rest == end && text.front() != '-';
    if (!is_count) throw CLI::ValidationError("not a number, or too large: " + text);
    return count;
}

template <class number>
void command_line::add_limit(CLI::App* to, const char* name, number& limit, const char* summary)
{
    to->add_option_function<std::string>(
          name, [&limit](const std::string& text) { limit = count_of<number>(text); }, summary)
        ->option_text("N [" + std::to_string(limit) + ']');
}

void command_line::add_check()
{
    CLI::App* const app = add(check_command);
    add_format(app);
    app->add_option("--color", m_color, "Whether to color the text; auto: on a terminal, unless NO_COLOR is set")
        ->check(CLI::IsMember({"auto", "always", "never"}))
        ->option_text("auto|always|never");
    app->add_flag("--werror", m_is_werror, "Fail if there are warnings");
    app->add_option("--within", m_within, "Refuse files outside this folder, the master file included")
        ->check(check_folder)
        ->option_text("FOLDER");
    add_limit(app, "--max-findings", m_limits.max_findings, "Show at most this many findings of each FILE");
    add_limit(app, "--max-files", m_limits.max_files, "Read at most this many files for each FILE");
    add_limit(app, "--max-bytes", m_limits.max_bytes, "Read at most this many bytes for each FILE");
    add_limit(app, "--max-values", m_limits.max_values, "Load maps of at most this many values for each FILE");
}

void command_line::add_get()
{
    CLI::App* const app = add(get_command);
    add_format(app);
    const auto add_name = [&](const char* name, const char* summary) {
        CLI::Option* const option = app->add_option(name, m_name, summary)->option_text(" ");
        m_names.push_back(option);
        return option;
    };
    add_name("MAP", "The name of a map; alone: its item names")->required();
    add_name("ITEM", "The name of one of its items");
    add_name("ATTRIBUTE", "The name of an attribute, if the items have attributes");
}

command_options command_line::options() const
{
    command_options options;
    for (const std::string& file : m_files) options.files.push_back(std::filesystem::u8path(file));
    for (const CLI::Option* name : m_names) {
        if (name->count() != 0) options.names.push_back(name->results().front());
    }
    options.is_json = m_format == "json";
    options.is_werror = m_is_werror;
    options.color = m_color == "always" ? color_mode::always : m_color == "never" ? color_mode::never : options.color;
    options.check = m_limits;
    if (m_within) options.check.within = std::filesystem::u8path(*m_within);
    options.check.suggest_files = true;
    return options;
}

exit_code command_line::run(std::vector<ustring8> arguments)
{
    std::reverse(arguments.begin(), arguments.end());  // the order that the parser wants
    try {
        m_app.parse(std::move(arguments));
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) {
            m_app.exit(error, std::cout);
            return success;
        }
        const auto chosen = m_app.get_subcommands();
        std::cerr << "data_mapper: " << printable(error.what()) << "\nrun: data_mapper "
                  << (chosen.empty() ? "" : chosen.front()->get_name() + ' ') << "--help\n";
        return trouble;
    }
    return m_run(options());
}

}  // namespace

exit_code run_command_line(std::vector<ustring8> arguments)
{
    return command_line().run(std::move(arguments));
}

}  // namespace data_mapper4::tool
