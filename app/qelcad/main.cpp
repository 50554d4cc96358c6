// qelcad: the host at the command line. Sub-commands are listed in one table below.
#include "console.h"
#include "drawing_summary.h"
#include "import_answers.h"
#include "one_shot.h"
#include "roundtrip.h"
#include "view_command.h"

#include <arx/aced.h>
#include <arx/brhost.h>
#include <arx/edhost.h>
#include <arx/rxregsvc.h>
#include <dxf/drawing.h>
#include <dxf/summary.h>
#include <model_diff.h>
#include <qel/qel.h>
#include <win/presenter.h>
#include <win/scripted.h>
#include <win/strings.h>
#include <win/terminal.h>
#include <win/transcript.h>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <sstream>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

struct Options {
    std::string modules;
    std::vector<std::string> load;
    bool autoload = true;
    std::vector<std::string> set;
    std::string transcript;
    std::string drawing;
    std::string script;
    std::string answers;
    std::string save;
    // import
    qelcad::ImportChoices import;
    // export
    qelcad::ExportChoices exportChoices;
    std::string output;
    std::string into;
    bool json = false;
    // roundtrip
    bool reference = true;
    std::string keep;
    double tolerance = 1e-6;
    bool verbose = false; // one-shot conversions: show the scripted dialog events too
    // view
    qelcad::PictureChoices picture;
};

// A failure that ends qelcad with a one-line reason and the given status.
struct Failure {
    int status;
    std::string reason;
};

fs::path executableFolder() {
    std::error_code ec;
    const fs::path self = fs::read_symlink("/proc/self/exe", ec);
    return ec ? fs::current_path() : self.parent_path();
}

fs::path moduleFolder(const Options& o) {
    if (!o.modules.empty()) return o.modules;
    if (const char* env = std::getenv("QELCAD_MODULES"); env && *env) return env;
    return executableFolder();
}

// The drawing named on the command line, else a new one; made current.
void openStartDrawing(const Options& o) {
    if (o.drawing.empty()) {
        qelhost::newDocument();
        return;
    }
    std::string message;
    if (qelhost::openDocument(o.drawing, message) == nullptr) throw Failure{2, message};
}

// The current drawing to --save, when given.
void saveEndDrawing(const Options& o) {
    if (o.save.empty()) return;
    std::string message;
    if (!qelhost::saveDocument(acDocManagerPtr()->curDocument(), o.save, message))
        throw Failure{2, "cannot save: " + message};
}

// The drawing (given or new), the host's variables from --set, then the modules: every ".arx" file
// of the module folder, and each --load.
void startHost(const Options& o) {
    if (!o.transcript.empty() && !win::Transcript::instance().setFile(o.transcript))
        throw Failure{2, "cannot write the transcript " + o.transcript};
    qelhost::setModuleFolder(moduleFolder(o));
    // The solid classes and the boundary walk are the host's own: modules find them at start.
    qelhost::registerSolidClasses();
    qelcad::registerViewCommand();
    openStartDrawing(o);
    for (const std::string& assignment : o.set) {
        const auto eq = assignment.find('=');
        if (eq == std::string::npos) throw Failure{2, "--set takes NAME=VALUE: " + assignment};
        if (qelhost::setSystemVariable(win::fromUtf8(assignment.substr(0, eq)),
                                       win::fromUtf8(assignment.substr(eq + 1)), true) != RTNORM)
            throw Failure{2, "--set refused: " + assignment};
    }
    std::vector<std::string> names;
    std::error_code ec;
    if (o.autoload)
        for (const auto& entry : fs::directory_iterator(qelhost::moduleFolder(), ec))
            if (entry.path().extension() == ".arx")
                names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    names.insert(names.end(), o.load.begin(), o.load.end());
    for (const std::string& name : names)
        if (!acrxDynamicLinker->loadModule(win::fromUtf8(name).c_str(), true))
            throw Failure{2, "cannot load module " + name};
}

// With `atExit` the process ends next: the drawings' memory is not freed object by object.
void stopHost(bool atExit = false) {
    qelhost::closeAllDocuments(atExit);
    qelhost::unloadAllModules();
    win::Transcript::instance().setFile("");
}

int shellCommand(const Options& o) {
    qelcad::showTranscript(std::cout, false);
    qelcad::catchInterrupt();
    win::setPresenter(std::make_shared<win::TerminalPresenter>(std::cin, std::cout));
    qelhost::setInput(std::make_shared<qelcad::TerminalInput>(std::cin));
    startHost(o);
    qelhost::commandLoop();
    stopHost();
    std::cout << "\n";
    return 0;
}

int runCommand(const Options& o) {
    std::ifstream in(o.script, std::ios::binary);
    if (!in) throw Failure{2, "cannot read the script " + o.script};
    std::ostringstream text;
    text << in.rdbuf();
    auto presenter = std::make_shared<win::ScriptedPresenter>();
    if (!o.answers.empty()) {
        std::string error;
        if (!presenter->loadFile(o.answers, error)) throw Failure{2, o.answers + ": " + error};
    }
    win::setPresenter(presenter);
    qelcad::showTranscript(std::cout, true);
    auto script = std::make_shared<qelhost::ScriptInput>(win::fromUtf8(text.str()));
    qelhost::setInput(script);
    startHost(o);
    // A script stops at the first command that fails, as the host's scripts do.
    int status = 0;
    std::string reason;
    while (!qelhost::quitRequested() && !script->ended()) {
        const int line = script->line();
        win::Transcript::instance().print(L"\nCommand: ");
        std::optional<std::wstring> name = script->ask(L"\nCommand: ", false);
        if (!name || name->empty()) continue;
        const int result = qelhost::runCommand(*name);
        if (result != RTNORM) {
            status = 1;
            reason = o.script + ":" + std::to_string(line) + ": " + win::toUtf8(*name) +
                     (result == RTCAN ? " was cancelled" : " failed");
            break;
        }
        if (presenter->failed()) {
            status = 1;
            reason = o.script + ":" + std::to_string(line) + ": " +
                     win::toUtf8(presenter->failures().front());
            break;
        }
    }
    // A script that failed leaves its drawing unsaved.
    if (status == 0) try {
            saveEndDrawing(o);
        } catch (const Failure&) {
            stopHost();
            throw;
        }
    stopHost();
    if (status != 0) throw Failure{status, reason};
    return 0;
}

// The one place where the import's drawing is written to disk.
void saveDrawing(const std::string& path) {
    std::string message;
    if (!qelhost::saveDocument(acDocManagerPtr()->curDocument(), path, message))
        throw Failure{2, "cannot save: " + message};
}

// An output that could not be saved, told before the import runs rather than after it.
void checkOutput(const std::string& output) {
    const fs::path path(output);
    std::string extension = path.extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(), ::tolower);
    if (extension != ".dxf")
        throw Failure{2, output + ": drawings are saved as DXF: give a name ending in .dxf"};
    const fs::path folder = path.parent_path();
    std::error_code ec;
    if (!folder.empty() && !fs::is_directory(folder, ec))
        throw Failure{2, output + ": the folder " + folder.string() + " does not exist"};
}

// Runs one command of the module with its dialogs answered, in the drawing given (or a new one):
// a dialog's refusal, a cancel or a command that didn't run ends qelcad with status 1.
void runAnswered(const Options& o, const std::vector<win::Answer>& answers,
                 const std::wstring& input, const std::string& drawing, const wchar_t* command,
                 std::string (*cancellation)(std::size_t)) {
    std::string error;
    auto presenter = std::make_shared<win::ScriptedPresenter>();
    for (const win::Answer& answer : answers)
        presenter->add(answer);
    if (!o.answers.empty() && !presenter->loadFile(o.answers, error))
        throw Failure{2, o.answers + ": " + error};
    // The round trip's table as data keeps standard output to itself.
    const qelcad::OneShotSession session(presenter, o.verbose, o.json ? std::cerr : std::cout);
    qelhost::setInput(std::make_shared<qelhost::ScriptInput>(input));
    Options host = o;
    host.drawing = drawing;
    startHost(host);
    win::Transcript::instance().print(L"\nCommand: " + std::wstring(command) + L"\n");
    const std::size_t mark = win::Transcript::instance().size();
    const int result = qelhost::runCommand(command);
    std::string reason;
    if (presenter->failed())
        reason = win::toUtf8(presenter->failures().front());
    else if (std::string cancelled = cancellation(mark); !cancelled.empty())
        reason = cancelled;
    else if (result != RTNORM)
        reason = result == RTCAN ? win::toUtf8(command) + " was cancelled"
                                 : win::toUtf8(command) + " failed (is the module QelIn.arx in " +
                                       qelhost::moduleFolder().string() + "?)";
    if (!reason.empty()) {
        stopHost();
        throw Failure{1, reason};
    }
    // An answer no dialog or box asked for (--cs for a file without a choice, say) is told.
    if (presenter->pending() != 0)
        std::cerr << "qelcad: " << presenter->pending()
                  << " answer(s) were not asked for and went unused\n";
}

// Runs QELIN on a new drawing (or the one of --into), its dialogs answered from the options.
// The host stays up for the caller; a failed import stops it and throws.
void importWithDialogs(const Options& o) {
    std::string error;
    // The dialog keeps the whole path in the settings, as a browse would give it.
    qelcad::ImportChoices choices = o.import;
    choices.input = fs::absolute(choices.input).string();
    const std::vector<win::Answer> answers = qelcad::importAnswers(choices, error);
    if (answers.empty()) throw Failure{2, error};
    runAnswered(o, answers, L"", o.into, L"QELIN", qelcad::importCancellation);
}

// Imports an object file through the module's own dialogs, answered from the options.
int importCommand(const Options& o) {
    checkOutput(o.output);
    importWithDialogs(o);
    std::cout << "\n";
    qelcad::printDrawingSummary(std::cout);
    try {
        saveDrawing(o.output);
    } catch (const Failure&) {
        stopHost();
        throw;
    }
    stopHost(true);
    return 0;
}

// Runs QELOUT on the drawing of the options, its dialog answered from the export choices; the
// object file it wrote. The host stays up for the caller; a failed export stops it and throws.
std::string exportWithDialogs(const Options& o) {
    std::string error;
    qelcad::ExportChoices choices = o.exportChoices;
    // An empty name stays empty, for the dialog to refuse.
    if (!choices.output.empty()) choices.output = fs::absolute(choices.output).string();
    const std::vector<win::Answer> answers = qelcad::exportAnswers(choices, error);
    if (answers.empty()) throw Failure{2, error};
    std::wstring picks;
    for (const std::string& word : choices.select)
        picks += win::fromUtf8(word) + L"\n";
    if (!choices.select.empty()) picks += L"\n";
    runAnswered(o, answers, picks, o.drawing, L"QELOUT", qelcad::exportCancellation);
    // The dialog adds ".qel" (in any case) to a name without it, and writes that file.
    const std::string& name = choices.output;
    const bool suffixed = name.size() >= 4 && name[name.size() - 4] == '.' &&
                          std::tolower(static_cast<unsigned char>(name[name.size() - 3])) == 'q' &&
                          std::tolower(static_cast<unsigned char>(name[name.size() - 2])) == 'e' &&
                          std::tolower(static_cast<unsigned char>(name[name.size() - 1])) == 'l';
    return suffixed ? name : name + ".qel";
}

// Exports a drawing to an object file through the module's own dialog, answered from the
// options; the objects of the file written are counted by class.
int exportCommand(const Options& o) {
    const std::string written = exportWithDialogs(o);
    stopHost(true);
    std::cout << "\n";
    qelcad::printObjectFileSummary(std::cout, written);
    return 0;
}

// The folder a round trip leaves its files in: --keep, else one of its own that goes at the end.
class WorkFolder {
public:
    explicit WorkFolder(const std::string& keep) : m_temporary(keep.empty()) {
        m_path = m_temporary ? fs::temp_directory_path() /
                                   ("qelcad-roundtrip-" + std::to_string(::getpid()))
                             : fs::path(keep);
        std::error_code ec;
        fs::create_directories(m_path, ec);
        if (!fs::is_directory(m_path, ec))
            throw Failure{2, "cannot make the folder " + m_path.string()};
    }
    ~WorkFolder() {
        std::error_code ec;
        if (m_temporary) fs::remove_all(m_path, ec);
    }
    fs::path file(const std::string& name) const { return m_path / name; }
    bool temporary() const { return m_temporary; }

private:
    bool m_temporary;
    fs::path m_path;
};

// Import, save, reopen, and what of the file the reopened drawing holds; then the export of the
// reopened drawing, compared with the input as models.
int roundtripCommand(const Options& o) {
    try {
        QelInit(0, 0, QelInitWords);
        QelReader readable(o.import.input.c_str());
    } catch (const QelException& e) {
        throw Failure{2, e.GetReason()};
    }
    const WorkFolder folder(o.keep);
    const std::string stem = fs::path(o.import.input).stem().string();
    const std::string drawing = folder.file(stem + ".dxf").string();
    Options run = o;
    run.into.clear();
    if (run.import.logDir.empty()) run.import.logDir = folder.file("").string();
    if (run.transcript.empty()) run.transcript = folder.file(stem + ".transcript.txt").string();
    importWithDialogs(run);
    std::string message;
    if (!qelhost::saveDocument(acDocManagerPtr()->curDocument(), drawing, message) ||
        qelhost::openDocument(drawing, message) == nullptr) {
        stopHost();
        throw Failure{1, "the drawing could not be saved and reopened: " + message};
    }
    qelcad::ImportHalf half;
    try {
        half =
            qelcad::importHalf(o.import.input, *acdbHostApplicationServices()->workingDatabase());
    } catch (const QelException& e) {
        stopHost();
        throw Failure{2, e.GetReason()};
    }
    stopHost();

    Options back = o;
    back.drawing = drawing;
    back.transcript = folder.file(stem + ".export.transcript.txt").string();
    back.exportChoices = {};
    back.exportChoices.output = folder.file(stem + ".back.qel").string();
    back.exportChoices.reference = o.reference;
    back.exportChoices.noReference = !o.reference;
    back.exportChoices.scope = "all";
    back.exportChoices.units = o.import.units;
    const std::string exported = exportWithDialogs(back);
    stopHost();
    qelcad::ExportHalf out;
    try {
        out.report = qeltool::compareFiles(o.import.input, exported, o.tolerance);
    } catch (const qeltool::DiffReadError& e) {
        out.why = e.what();
    }

    const std::string shown =
        folder.temporary() ? drawing + " (removed; --keep DIR keeps it)" : drawing;
    // The data form names only a drawing that is still there.
    std::cout << (o.json ? qelcad::roundtripJson(o.import.input, folder.temporary() ? "" : drawing,
                                                 half, out)
                         : qelcad::roundtripText(o.import.input, shown, half, out));
    const bool whole =
        half.missing.empty() && half.unreadable.empty() && half.layers.inDrawing == half.layers.in;
    return whole && out.report && out.report->equal() ? 0 : 1;
}

int infoCommand(const Options& o) {
    std::string message;
    std::unique_ptr<AcDbDatabase> db = dxf::openDrawing(o.drawing, message);
    if (db == nullptr) throw Failure{2, message};
    const dxf::DrawingSummary summary = dxf::summarize(*db);
    std::cout << (o.json ? dxf::summaryJson(summary)
                         : "Drawing: " + o.drawing + "\n" + dxf::summaryText(summary));
    return 0;
}

// A picture of a drawing: shaded (PNG) or its visible edges (SVG).
int viewCommand(const Options& o) {
    view::PictureOptions options;
    std::string error;
    if (!qelcad::pictureOptions(o.picture, options, error)) throw Failure{2, error};
    if (!view::isPictureName(o.output))
        throw Failure{2, o.output + ": pictures are written as .png or .svg"};
    const fs::path folder = fs::path(o.output).parent_path();
    std::error_code ec;
    if (!folder.empty() && !fs::is_directory(folder, ec))
        throw Failure{2, o.output + ": the folder " + folder.string() + " does not exist"};
    qelhost::registerSolidClasses();
    std::string message;
    std::unique_ptr<AcDbDatabase> db = dxf::openDrawing(o.drawing, message);
    if (db == nullptr) throw Failure{2, message};
    const view::PictureResult result = view::writePicture(*db, o.output, options);
    if (!result.written) throw Failure{1, result.message};
    std::cout << o.output << ": " << result.message << "\n";
    return 0;
}

struct SubCommand {
    const char* name;
    const char* help;
    std::function<void(CLI::App&, Options&)> arguments;
    int (*run)(const Options&);
};

void hostOptions(CLI::App& app, Options& o) {
    app.add_option("--modules", o.modules,
                   "Module folder (default: $QELCAD_MODULES, else the folder of qelcad)");
    // One value per use, so that a drawing after them stays the drawing.
    app.add_option("--load", o.load, "Also load this module from the module folder (repeatable)")
        ->allow_extra_args(false);
    app.add_flag("!--no-autoload", o.autoload, "Don't load the .arx modules of the module folder");
    app.add_option("--set", o.set,
                   "Set a system variable first, read-only ones too (NAME=VALUE, repeatable)")
        ->allow_extra_args(false);
    app.add_option("--transcript", o.transcript, "Also write the transcript to this file");
    app.add_option("drawing", o.drawing, "Drawing to open (DXF); without it a new drawing");
}

const SubCommand kCommands[] = {
    {"shell", "The interactive command line", hostOptions, shellCommand},
    {"run", "Run a script of commands and answers",
     [](CLI::App& app, Options& o) {
         hostOptions(app, o);
         app.add_option("--script", o.script, "Script: one answer per line or blank-separated word")
             ->required();
         app.add_option("--answers", o.answers, "Answers for dialogs and message boxes");
         app.add_option("--save", o.save, "Save the drawing to this file at the end");
     },
     runCommand},
    {"import", "Import an object file through the module's dialogs and save the drawing",
     [](CLI::App& app, Options& o) {
         hostOptions(app, o);
         qelcad::ImportChoices& c = o.import;
         app.remove_option(app.get_option("drawing"));
         app.add_option("input", c.input, "The object file (.qel) to import")->required();
         app.add_option("-o,--output", o.output, "The drawing to write (.dxf)")->required();
         app.add_option("--into", o.into, "Import into this drawing instead of a new one");
         app.add_option("--units", c.units,
                        "Drawing units: a name of the dialog's list or its index 0-9");
         app.add_option("--scale", c.scale, "Scale factor (User defined units unless --units)");
         app.add_flag("--blocks", c.blocks, "Import objects as blocks");
         app.add_flag("--solids", c.solids, "Import objects as solids");
         app.add_flag("--points", c.points, "Import point sets");
         app.add_flag("--layer-colour-override", c.layerColourOverride,
                      "Use the layer colour overrides of the file's view");
         app.add_flag("--suppress-hidden", c.suppressHidden,
                      "Leave out the classes the file's view hides");
         app.add_option("--log-dir", c.logDir, "Folder of the log file (default: the drawing's)");
         app.add_flag("--no-log", c.noLog, "Write no log file");
         app.add_option("--cs", c.coordinateSystem,
                        "Coordinate system of the file that becomes the world");
         app.add_option("--box", c.boxes,
                        "Answer for the next message box: ok, cancel, yes, no, ... (repeatable)")
             ->allow_extra_args(false);
         app.add_option("--answers", o.answers, "Further answers, in the format of run");
         app.add_flag("-v,--verbose", o.verbose,
                      "Also show each dialog event of the scripted answers");
     },
     importCommand},
    {"roundtrip",
     "Import an object file, save, reopen, export and compare with the input: the fidelity table",
     [](CLI::App& app, Options& o) {
         hostOptions(app, o);
         app.remove_option(app.get_option("drawing"));
         app.add_option("input", o.import.input, "The object file (.qel)")->required();
         app.add_option("--units", o.import.units,
                        "Drawing units: a name of the import dialog's list or its index 0-9");
         app.add_option("--cs", o.import.coordinateSystem,
                        "Coordinate system of the file that becomes the world (as for import)");
         app.add_flag("--blocks", o.import.blocks, "Import objects as blocks");
         app.add_flag("--points", o.import.points, "Import point sets");
         app.add_flag("--reference,!--no-reference", o.reference,
                      "Export with the input as the reference file (the default), or without");
         app.add_option("--keep", o.keep,
                        "Keep the drawing, the log and the transcript in this folder");
         app.add_option("--tolerance", o.tolerance,
                        "Relative tolerance of reals in the comparison (default 1e-6)")
             ->check(CLI::PositiveNumber);
         app.add_flag("--json", o.json, "The table as JSON");
     },
     roundtripCommand},
    {"export", "Export a drawing to an object file through the module's dialog",
     [](CLI::App& app, Options& o) {
         hostOptions(app, o);
         qelcad::ExportChoices& c = o.exportChoices;
         app.get_option("drawing")->description("The drawing (DXF) to export")->required();
         app.add_option("-o,--output", c.output, "The object file to write (.qel)")->required();
         app.add_flag("--reference", c.reference,
                      "Use the file last imported as reference (process method 1)");
         app.add_flag("--no-reference", c.noReference,
                      "Build every object from the drawing alone (process method 0)");
         app.add_option("--scope", c.scope, "What to export: all, visible or selected");
         app.add_option("--select", c.select,
                        "Under --scope selected: an answer of the selection prompt (a handle, "
                        "ALL or L; repeatable)")
             ->allow_extra_args(false);
         app.add_option("--units", c.units,
                        "Export units: a name of the dialog's list or its index 0-9");
         app.add_option("--scale", c.scale, "Scale factor (User defined units unless --units)");
         app.add_option("--box", c.boxes,
                        "Answer for the next message box: ok, cancel, yes, no, ... (repeatable)")
             ->allow_extra_args(false);
         app.add_option("--answers", o.answers, "Further answers, in the format of run");
         app.add_flag("-v,--verbose", o.verbose,
                      "Also show each dialog event of the scripted answers");
     },
     exportCommand},
    {"info", "Describe a drawing: entities, layers, groups, UCSs, the module's data",
     [](CLI::App& app, Options& o) {
         app.add_option("drawing", o.drawing, "Drawing (DXF)")->required();
         app.add_flag("--json", o.json, "As JSON");
     },
     infoCommand},
    {"view", "A picture of a drawing: shaded (.png) or its visible edges (.svg)",
     [](CLI::App& app, Options& o) {
         app.add_option("drawing", o.drawing, "Drawing (DXF)")->required();
         app.add_option("-o,--output", o.output, "The picture to write (.png or .svg)")->required();
         app.add_option("--view", o.picture.view,
                        "iso, top, front, right, back, left or bottom (default iso)");
         app.add_option("--size", o.picture.size, "WIDTHxHEIGHT in pixels (default 800x600)");
         app.add_option("--layers", o.picture.layers,
                        "Only these layers, comma separated (default all that are on)");
         app.add_option("--background", o.picture.background, "white or black (default white)");
     },
     viewCommand},
};

} // namespace

int main(int argc, char** argv) {
    CLI::App app{"qelcad: the command-line CAD host"};
    app.require_subcommand(1);
    Options options;
    const SubCommand* chosen = nullptr;
    for (const SubCommand& command : kCommands) {
        CLI::App* sub = app.add_subcommand(command.name, command.help);
        command.arguments(*sub, options);
        sub->callback([&chosen, &command] { chosen = &command; });
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        // --help and --version end with 0; every usage error with the status of bad options.
        return app.exit(e) == 0 ? 0 : 2;
    }
    try {
        return chosen->run(options);
    } catch (const Failure& f) {
        std::cerr << "qelcad: " << f.reason << "\n";
        return f.status;
    }
}
