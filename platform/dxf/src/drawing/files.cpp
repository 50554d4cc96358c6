// Drawings in files: read whole, written beside and put in place when complete.
#include <dxf/drawing.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <unistd.h>

namespace fs = std::filesystem;

namespace dxf {

std::unique_ptr<AcDbDatabase> openDrawing(const std::string& path, std::string& message) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        message = path + ": cannot be read (" + std::strerror(errno) + ")";
        return nullptr;
    }
    std::ostringstream text;
    text << in.rdbuf();
    if (in.bad()) {
        message = path + ": reading failed";
        return nullptr;
    }
    try {
        return readDrawing(text.str(), path);
    } catch (const DxfError& e) {
        message = e.what();
    } catch (const std::exception& e) {
        message = path + ": " + e.what();
    }
    return nullptr;
}

bool saveDrawing(AcDbDatabase& db, const std::string& path, std::string& message) {
    const fs::path target(path);
    fs::path temp = target;
    temp += ".saving-" + std::to_string(::getpid());
    {
        std::ofstream out(temp, std::ios::binary | std::ios::trunc);
        if (!out) {
            message = path + ": cannot write " + temp.string() + " (" + std::strerror(errno) + ")";
            return false;
        }
        try {
            writeDrawing(db, out);
        } catch (const std::exception& e) {
            out.close();
            std::error_code ignored;
            fs::remove(temp, ignored);
            message = path + ": " + e.what();
            return false;
        }
        out.flush();
        if (!out) {
            const std::string reason = std::strerror(errno);
            out.close();
            std::error_code ignored;
            fs::remove(temp, ignored);
            message = path + ": writing failed (" + reason + "); the old file is unchanged";
            return false;
        }
    }
    std::error_code ec;
    fs::rename(temp, target, ec);
    if (ec) {
        std::error_code ignored;
        fs::remove(temp, ignored);
        message = path + ": cannot put the new file in place (" + ec.message() +
                  "); the old file is unchanged";
        return false;
    }
    return true;
}

} // namespace dxf
