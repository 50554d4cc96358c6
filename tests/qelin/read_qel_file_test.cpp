// The import driver through the host with scripted answers: layers, their state and names, the
// objects dispatched once each, the ways a read stops, and the host's state afterwards.
#include "import/layer_import.h"
#include "import_fixture.h"

#include "import/object_dispatch.h"

#include <arx/edhost.h>

#include <fstream>

namespace {

using qelintest::FileLayout;
using qelintest::ImportTest;
using qelintest::object;
using qelintest::transformation;

bool has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}
bool has(const std::wstring& text, const std::wstring& part) {
    return text.find(part) != std::wstring::npos;
}
std::size_t count(const std::string& text, const std::string& part) {
    std::size_t n = 0;
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++n;
    return n;
}

// For its lifetime every row of the dispatcher that makes something calls a recorder instead of
// its creator, so that the walk is seen whichever creators the build has.
class DispatchRecorder {
public:
    DispatchRecorder() { s_classes.clear(); }
    // The classes of the objects dispatched since the last call, in order, blank separated.
    static std::string take() {
        std::string out;
        for (const std::string& name : s_classes)
            out += name + " ";
        s_classes.clear();
        return out;
    }

private:
    static QelCreated record(QelObject* object, void*, int, unsigned char, unsigned,
                             const CString*) {
        s_classes.push_back(object->GetName());
        return QelCreated::Done;
    }
    static inline std::vector<std::string> s_classes;
    QelCreatorSwap m_swap{record};
};

constexpr const wchar_t* kBadNamesBox =
    L"Some layer names in the qel file have invalid characters\nThe invalid characters were "
    L"replaced with '_'\n\nRefer to Log file for layer names that were changed.|64";

// Five layers: colours, an invalid name, a layer without a name, the existing "0", and a last
// layer without objects; two of them off in the view. Objects: one listed twice, an unknown
// class, and the file's Header (object 12) in a list.
FileLayout plantWithOddLayers() {
    FileLayout layout;
    layout.objects = {object("Cylinder"), object("Flange"), object("Spaceship"), object("Sphere")};
    layout.layers = {{R"("Piping")", "[0, 1]", "[255, 0, 0]"},
                     {R"("A,B=C")", "[1, 2]", "[0, 255, 0]"},
                     {"", "[3]", ""},
                     {R"("0")", "[12]", "[0, 0, 255]"},
                     {R"("Last")", "", ""}};
    layout.overrides = "[0, 1, 0, 0, 1]";
    return layout;
}

TEST_F(ImportTest, LayersAreMadeWithTheirColoursNamesAndViewState) {
    DispatchRecorder dispatched;
    answer("");
    qelhost::setSystemVariable(L"OSMODE", L"7", false);
    run(plantWithOddLayers());

    const auto piping = layer(L"Piping");
    ASSERT_TRUE(piping);
    EXPECT_EQ(piping->red, 255u);
    EXPECT_EQ(piping->green, 0u);
    EXPECT_FALSE(piping->off || piping->frozen);
    // Off in the view: turned off, and frozen when the next layer comes.
    const auto renamed = layer(L"A_B_C");
    ASSERT_TRUE(renamed);
    EXPECT_EQ(renamed->green, 255u);
    EXPECT_TRUE(renamed->off && renamed->frozen);
    EXPECT_FALSE(layer(L"A,B=C"));
    // The last layer of the list stays off without being frozen; without a colour it is white.
    const auto last = layer(L"Last");
    ASSERT_TRUE(last);
    EXPECT_TRUE(last->off);
    EXPECT_FALSE(last->frozen);
    EXPECT_EQ(last->red + last->green + last->blue, 3u * 255u);
    // "0" existed: its colour isn't touched. The temporary layers are gone.
    EXPECT_EQ(layer(L"0")->blue, layer(L"0")->red);
    for (const wchar_t* temporary :
         {L"z_VelmoraDefaultLayer", L"z_VelmoraExclusionVolume", L"z_VelmoraTemp_Layer"})
        EXPECT_FALSE(layer(temporary)) << temporary;

    const std::string log = logText();
    EXPECT_TRUE(has(log, "\nReading Qel file... : " + m_folder.string() + "/in.qel"));
    EXPECT_TRUE(has(log, "\n\n Creating new layer: [Piping]\n Setting to current layer"));
    EXPECT_TRUE(
        has(log, "\n Invalid Layer name in qel file: A,B=C\n Changing layer name to: A_B_C"));
    EXPECT_TRUE(has(log, "\nError reading layer name."));
    EXPECT_TRUE(has(log, "\n New layer: [0] Already exists."));
    EXPECT_TRUE(has(log, "\n\n Creating new layer: [Last]\n Setting to current layer\n No objects "
                         "in this layer."));
    // A reference listed twice is logged twice and made once.
    EXPECT_EQ(count(log, "\n  Processing Qel ref # 1 Flange"), 2u);
    EXPECT_TRUE(has(log, "\n Removing temporary  layers\n Restoring cad settings"));

    EXPECT_EQ(DispatchRecorder::take(), "Cylinder Flange Sphere ");
    const std::wstring shown = printed();
    EXPECT_TRUE(has(shown, L"\n Skipping unrecognized object: "));
    EXPECT_FALSE(has(shown, L"Spaceship"));      // shown garbled, as the host does
    EXPECT_FALSE(has(shown, L"Header objects")); // known, makes nothing, says nothing
    EXPECT_EQ(errorCount(), 0u);
    EXPECT_EQ(m_badLayerNames, 1);
    ASSERT_FALSE(boxes().empty());
    EXPECT_EQ(boxes().back(), kBadNamesBox);

    // The host as it was: current layer, quiet variables back.
    EXPECT_EQ(currentLayer(), L"0");
    resbuf osmode{};
    acedGetVar(L"OSMODE", &osmode);
    EXPECT_EQ(osmode.resval.rint, 7);
}

TEST_F(ImportTest, ExistingLayersMergeAndKeepTheirColourTheTempNameIsPurged) {
    answer("");
    ASSERT_TRUE(QelCreateLayer(L"Pipe_A", 1, 2, 3));
    FileLayout layout;
    layout.objects = {object("Cylinder")};
    // The temporary name is taken as any other; not being the last, it isn't current at the end.
    layout.layers = {{R"("z_VelmoraTemp_Layer")", "", ""},
                     {R"("Pipe,A")", "[0]", "[200, 200, 200]"}};
    // The second layer takes its objects in the layer's colour.
    layout.overrides = "[0, 2]";
    QelDocData().useLayerColourOverride = 1;
    run(layout);
    const auto merged = layer(L"Pipe_A");
    ASSERT_TRUE(merged);
    EXPECT_EQ(merged->red + merged->green + merged->blue, 6u);
    EXPECT_TRUE(
        has(logText(), "\n Changing layer name to: Pipe_A\n New layer: [Pipe_A] Already exists."));
    EXPECT_TRUE(has(logText(), "\n\n Creating new layer: [z_VelmoraTemp_Layer]"));
    EXPECT_FALSE(layer(L"z_VelmoraTemp_Layer"));
    EXPECT_EQ(QelDocData().layerColourFlag, 1);
    // The flag is each layer's own, and needs the user's choice.
    layout.overrides = "[2, 0]";
    run(build(layout.json(), "two.qel"));
    EXPECT_EQ(QelDocData().layerColourFlag, 0);
    layout.overrides = "[0, 2]";
    QelDocData().useLayerColourOverride = 0;
    run(build(layout.json(), "three.qel"));
    EXPECT_EQ(QelDocData().layerColourFlag, 0);
}

TEST_F(ImportTest, HiddenClassesAreFilteredByTheirNumbersAgainstTheRows) {
    FileLayout layout;
    for (const char* name :
         {"Flange", "Reducer", "Sphere", "RectangularBox", "Valve", "Vertex3d", "TriMesh", "Torus"})
        layout.objects.push_back(object(name));
    layout.layers = {{R"("Piping")", "[0, 1, 2, 3, 4, 5, 6, 7]", ""}};
    const std::wstring file = build(layout.json());
    DispatchRecorder dispatched;
    auto shownClasses = [&] {
        run(file);
        return DispatchRecorder::take();
    };
    answer("");
    CDocData& doc = QelDocData();
    // "Flange" (11) hides the Reducer of row 11, "Valve" (16) the RectangularBox of row 16,
    // "Vertex3d" (17) the Flange of row 17, "TriMesh" (36) nothing.
    for (unsigned number : {11u, 16u, 17u, 36u})
        doc.hiddenClasses.Append(number);
    doc.suppressHiddenClasses = 1;
    EXPECT_EQ(shownClasses(), "Sphere Valve Vertex3d TriMesh Torus ");
    doc.suppressHiddenClasses = 0;
    EXPECT_EQ(shownClasses(), "Flange Reducer Sphere RectangularBox Valve Vertex3d TriMesh Torus ");
    doc.suppressHiddenClasses = 1;
    doc.hiddenClasses.RemoveAll();
    EXPECT_EQ(shownClasses(), "Flange Reducer Sphere RectangularBox Valve Vertex3d TriMesh Torus ");
    EXPECT_EQ(errorCount(), 0u);
}

TEST_F(ImportTest, MissingListsAreNotedAndTheReadGoesOn) {
    DispatchRecorder dispatched;
    answer("");
    FileLayout layout;
    layout.objects = {object("Cylinder")};
    layout.layers = {{R"("Piping")", "[0]", ""}};
    layout.modelObjectList = false;
    run(layout);
    EXPECT_TRUE(has(logText(), "\nNo objects in ModelSpace 'objectList'."));
    EXPECT_TRUE(layer(L"Piping"));
    EXPECT_EQ(dispatched.take(), "Cylinder ");

    // An empty layer list walks nothing, and the temporary layers still go.
    FileLayout empty;
    run(build(empty.json(), "empty.qel"));
    EXPECT_FALSE(layer(L"z_VelmoraDefaultLayer"));
    EXPECT_TRUE(has(logText(), "\n Removing temporary  layers"));
    EXPECT_EQ(errorCount(), 0u);
}

TEST_F(ImportTest, AReferenceBeyondTheFileCostsOneErrorAndTheWalkGoesOn) {
    DispatchRecorder dispatched;
    answer("");
    FileLayout layout;
    layout.objects = {object("Cylinder"), object("Sphere")};
    layout.layers = {{R"("Piping")", "[0, 500, 1]", ""}};
    run(layout);
    EXPECT_EQ(errorCount(), 1u);
    EXPECT_TRUE(has(logText(), "\n  Processing Qel ref # 500 \nUnable to read qel object."));
    EXPECT_EQ(dispatched.take(), "Cylinder Sphere ");
    EXPECT_TRUE(has(logText(), "\n Removing temporary  layers"));
}

TEST_F(ImportTest, ADamagedObjectCostsItselfAloneAndTheWalkGoesOn) {
    DispatchRecorder dispatched;
    answer("");
    FileLayout layout;
    layout.objects = {object("Cylinder"), object("Sphere")};
    layout.layers = {{R"("Piping")", "[0, 1]", ""}};
    const std::wstring file = build(layout.json());
    {
        std::fstream bytes(std::filesystem::path(file),
                           std::ios::in | std::ios::out | std::ios::binary);
        bytes.seekp(72); // inside object 0, which starts right after the file's header
        bytes.put('\x7f');
    }
    run(file);
    EXPECT_EQ(dispatched.take(), "Sphere ");
    EXPECT_EQ(errorCount(), 1u);
    const std::string log = logText();
    EXPECT_TRUE(has(log, "\n  Processing Qel ref # 0 \n")) << log;
    EXPECT_TRUE(has(log, "object 0 is damaged")) << log;
    EXPECT_TRUE(has(log, "\n Removing temporary  layers"));
    EXPECT_EQ(currentLayer(), L"0");
}

TEST_F(ImportTest, AFileWithoutHeaderOrThatCannotBeReadEndsBeforeAnyLayer) {
    answer("");
    FileLayout layout = plantWithOddLayers();
    layout.header = false;
    run(layout);
    EXPECT_EQ(boxes(), (std::vector<std::wstring>{
                           L"\nUnable to read qel file Header.\n\nSuppress all non-critical error "
                           L"messages?|36"}));
    EXPECT_TRUE(has(logText(), "\nUnable to read qel file Header."));
    EXPECT_FALSE(layer(L"Piping"));
    EXPECT_FALSE(layer(L"z_VelmoraDefaultLayer"));

    m_mark = win::Transcript::instance().size();
    const std::filesystem::path junk = m_folder / "junk.qel";
    std::ofstream(junk) << "not an object file";
    run(junk.wstring());
    const auto shown = boxes();
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_TRUE(has(shown[0], L"|48")) << shown[0]; // the library's reason, exclamation icon
    EXPECT_EQ(shown[1],
              L"\nUnable to read qel file Header.\n\nSuppress all non-critical error messages?|36");
    EXPECT_EQ(errorCount(), 0u); // the reporter shows and logs; it doesn't count
    EXPECT_EQ(currentLayer(), L"0");
}

TEST_F(ImportTest, ADamagedListEndsTheWalkWithTheStateRestoredAndOneError) {
    answer("");
    FileLayout layout;
    layout.objects = {object("Cylinder")};
    layout.layers = {{R"("Piping")", "[0]", ""}};
    std::string json = layout.json();
    // The layer's list as text: the library refuses to read it as numbers.
    const std::string from = R"(["objectList", "uint[]", [0]])";
    json.replace(json.find(from), from.size(), R"(["objectList", "string", "0"])");
    qelhost::setSystemVariable(L"CMDECHO", L"1", false);
    run(build(json));
    ASSERT_EQ(boxes().size(), 1u);
    EXPECT_TRUE(has(boxes()[0], L"|48"));
    EXPECT_EQ(errorCount(), 1u);
    EXPECT_TRUE(has(logText(), " Restoring cad settings\n"));
    EXPECT_FALSE(has(logText(), "Removing temporary"));
    resbuf echo{};
    acedGetVar(L"CMDECHO", &echo);
    EXPECT_EQ(echo.resval.rint, 1);
    EXPECT_EQ(currentLayer(), L"0");
}

TEST_F(ImportTest, AMistypedStructureParamIsToldAndCountedBeforeAnyLayer) {
    answer("");
    FileLayout layout;
    layout.objects = {object("Cylinder")};
    layout.layers = {{R"("Piping")", "[0]", ""}};
    std::string json = layout.json();
    const std::string from = R"(["rootLocation", "uint", 4])";
    ASSERT_NE(json.find(from), std::string::npos) << json;
    json.replace(json.find(from), from.size(), R"(["rootLocation", "string", "4"])");
    qelhost::setSystemVariable(L"OSMODE", L"9", false);
    run(build(json));
    ASSERT_EQ(boxes().size(), 1u);
    EXPECT_TRUE(has(boxes()[0], L"|48")) << boxes()[0];
    EXPECT_EQ(errorCount(), 1u);
    EXPECT_FALSE(layer(L"Piping"));
    resbuf osmode{};
    acedGetVar(L"OSMODE", &osmode);
    EXPECT_EQ(osmode.resval.rint, 9);
}

TEST_F(ImportTest, CancelFromTheProgressDialogKeepsWhatWasMade) {
    FileLayout layout;
    layout.objects = {object("Cylinder"), object("Sphere"), object("Torus")};
    layout.layers = {{R"("Piping")", "[0, 1, 2]", ""}, {R"("Steel")", "[]", ""}};
    answer("progress cancel 2\n");
    run(layout);
    const std::string log = logText();
    EXPECT_TRUE(has(log, "\n User canceled, import stopped.\n"));
    EXPECT_FALSE(has(log, "Torus"));
    EXPECT_FALSE(has(log, "Removing temporary"));
    EXPECT_FALSE(layer(L"Steel"));
    // Temporary layers are left as they were made.
    EXPECT_TRUE(layer(L"z_VelmoraDefaultLayer"));
    EXPECT_EQ(currentLayer(), L"0");
}

} // namespace
