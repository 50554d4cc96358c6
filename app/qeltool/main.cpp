// qeltool: object files to their JSON form and back, and checks of a file's structure.
#include "validate.h"

#include <qel/qel.h>
#include <qel/qel_json.h>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <sstream>

namespace {

struct Options {
    std::string input;
    std::string output;
};

int dumpCommand(const Options& o) {
    QelReader reader(o.input.c_str());
    std::ostringstream text;
    qeljson::dump(reader, text);
    std::cout << text.str();
    return 0;
}

int buildCommand(const Options& o) {
    std::ifstream in(o.input, std::ios::binary);
    if (!in) throw std::runtime_error(fmt::format("Cannot open '{}'", o.input));
    std::ostringstream text;
    text << in.rdbuf();
    qeljson::build(text.str(), o.input, o.output);
    return 0;
}

int validateCommand(const Options& o) {
    QelReader reader(o.input.c_str());
    const auto findings = qeltool::validate(reader);
    for (const auto& f : findings) {
        if (f.object < 0)
            std::cerr << fmt::format("{}: {}\n", o.input, f.text);
        else
            std::cerr << fmt::format("{}: object {}: {}\n", o.input, f.object, f.text);
    }
    if (!findings.empty()) {
        std::cerr << fmt::format("{}: {} problem(s) found\n", o.input, findings.size());
        return 1;
    }
    std::cout << fmt::format("{}: {} objects, structure valid\n", o.input, reader.GetObjectCount());
    return 0;
}

int statsCommand(const Options& o) {
    QelReader reader(o.input.c_str());
    struct Row {
        std::uint64_t objects = 0, bytes = 0;
    };
    std::map<std::string, Row> rows;
    std::uint64_t total = 0;
    for (unsigned id = 0; id < reader.GetObjectCount(); ++id) {
        QelObject* obj = reader.ReadObject(id);
        Row& r = rows[obj->GetName()];
        obj->UnRef();
        ++r.objects;
        r.bytes += reader.GetObjectSize(id);
        total += reader.GetObjectSize(id);
    }
    std::vector<std::pair<std::string, Row>> sorted(rows.begin(), rows.end());
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const auto& a, const auto& b) { return a.second.bytes > b.second.bytes; });
    std::cout << fmt::format("{:<24} {:>10} {:>14}\n", "class", "objects", "bytes");
    for (const auto& [name, r] : sorted)
        std::cout << fmt::format("{:<24} {:>10} {:>14}\n", name, r.objects, r.bytes);
    std::cout << fmt::format("{:<24} {:>10} {:>14}\n", "total", reader.GetObjectCount(), total);
    return 0;
}

struct Command {
    const char* name;
    const char* usage;
    bool takesOutput;
    int (*run)(const Options&);
};

// Every command of the tool: name, what it does, whether it writes a file, its handler.
constexpr Command kCommands[] = {
    {"dump", "Print the JSON form of FILE.qel", false, dumpCommand},
    {"build", "Write FILE.qel (-o) from its JSON form", true, buildCommand},
    {"validate", "Read every object and check the file's structure and references", false,
     validateCommand},
    {"stats", "Objects and bytes per class", false, statsCommand},
};

} // namespace

int main(int argc, char** argv) {
    QelInit(0, 0, QelInitWords);
    CLI::App app{"qeltool: QEL object files and their JSON form"};
    app.require_subcommand(1);
    Options options;
    std::function<int(const Options&)> chosen;
    for (const Command& c : kCommands) {
        CLI::App* sub = app.add_subcommand(c.name, c.usage);
        sub->add_option("file", options.input, "input file")->required();
        if (c.takesOutput)
            sub->add_option("-o,--output", options.output, "output file")->required();
        sub->callback([&chosen, &c] { chosen = c.run; });
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        return app.exit(e) == 0 ? 0 : 2;
    }
    try {
        return chosen(options);
    } catch (const QelException& e) {
        std::cerr << "qeltool: " << e.GetReason() << "\n";
    } catch (const std::exception& e) {
        std::cerr << "qeltool: " << e.what() << "\n";
    }
    return 1;
}
