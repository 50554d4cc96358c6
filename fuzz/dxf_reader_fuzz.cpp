// Fuzzes the drawing reader. Any text is either refused with a DxfError or read into a database;
// what was read must write, and what was written must read again.
#include <dxf/drawing.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    std::unique_ptr<AcDbDatabase> db;
    try {
        db = dxf::readDrawing(text, "fuzz");
    } catch (const dxf::DxfError&) {
        return 0;
    }
    std::ostringstream out;
    dxf::writeDrawing(*db, out);
    try {
        dxf::readDrawing(out.str(), "written");
    } catch (const dxf::DxfError& e) {
        std::fprintf(stderr, "a drawing read and written does not read again: %s\n", e.what());
        std::abort();
    }
    return 0;
}
