// qeltool: object files to their JSON form and back, checks of a file's structure, and the
// comparison of two files as models.
#include "model_diff.h"
#include "validate.h"

#include <qel/qel.h>
#include <qel/qel_json.h>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <sstream>

namespace {

struct Options {
    std::string input;
    std::string output;
    std::string second; // the other file of a comparison
    double tolerance = qeltool::kDefaultTolerance;
    bool json = false;
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

// Two files compared as models. Status 0: equal within the tolerance; 1: they differ; 2: a file
// could not be read (each damaged object of either file is named).
int diffCommand(const Options& o) {
    qeltool::DiffReport report;
    try {
        report = qeltool::compareFiles(o.input, o.second, o.tolerance);
    } catch (const std::exception& e) {
        std::istringstream lines(e.what());
        for (std::string line; std::getline(lines, line);)
            std::cerr << "qeltool: " << line << "\n";
        return 2;
    }
    std::cout << (o.json ? qeltool::diffJson : qeltool::diffText)(report, o.input, o.second);
    return report.equal() ? 0 : 1;
}

void oneFile(CLI::App& sub, Options& o) {
    sub.add_option("file", o.input, "input file")->required();
}

void fileAndOutput(CLI::App& sub, Options& o) {
    oneFile(sub, o);
    sub.add_option("-o,--output", o.output, "output file")->required();
}

void twoFiles(CLI::App& sub, Options& o) {
    sub.add_option("a", o.input, "the first file (A)")->required();
    sub.add_option("b", o.second, "the second file (B)")->required();
    sub.add_option("--tolerance", o.tolerance,
                   "Relative tolerance of reals (default 1e-9; floats never finer than their "
                   "last bit)")
        ->check([](const std::string& text) -> std::string {
            char* end = nullptr;
            const double v = std::strtod(text.c_str(), &end);
            return *end == 0 && std::isfinite(v) && v >= 0 && v < 1
                       ? ""
                       : "a relative tolerance from 0 to below 1";
        });
    sub.add_flag("--json", o.json, "The report as JSON");
}

struct Command {
    const char* name;
    const char* usage;
    void (*arguments)(CLI::App&, Options&);
    int (*run)(const Options&);
};

// Every command of the tool: name, what it does, its arguments, its handler.
constexpr Command kCommands[] = {
    {"dump", "Print the JSON form of FILE.qel", oneFile, dumpCommand},
    {"build", "Write FILE.qel (-o) from its JSON form", fileAndOutput, buildCommand},
    {"validate", "Read every object and check the file's structure and references", oneFile,
     validateCommand},
    {"stats", "Objects and bytes per class", oneFile, statsCommand},
    {"diff", "Compare two object files as models: objects only in one, params that differ",
     twoFiles, diffCommand},
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
        c.arguments(*sub, options);
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
