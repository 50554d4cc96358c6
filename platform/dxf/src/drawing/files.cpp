// Drawings in files: read whole, written beside and put in place when complete.
#include <dxf/drawing.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <unistd.h>
#include <vector>

namespace fs = std::filesystem;

namespace dxf {

std::unique_ptr<AcDbDatabase> openDrawing(const std::string& path, std::string& message) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        message = path + ": cannot be read (" + std::strerror(errno) + ")";
        return nullptr;
    }
    // The whole text in one read where the size is known, through the stream otherwise.
    std::string text;
    std::error_code sizeUnknown;
    const auto size = fs::file_size(path, sizeUnknown);
    if (!sizeUnknown) {
        text.resize(size);
        in.read(text.data(), std::streamsize(size));
        text.resize(std::size_t(in.gcount()));
    }
    if (!in.eof()) {
        std::ostringstream rest;
        rest << in.rdbuf();
        text += rest.str();
    }
    if (in.bad()) {
        message = path + ": reading failed";
        return nullptr;
    }
    try {
        return readDrawing(text, path);
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
        // Records go to the file in large blocks rather than one system call per few records.
        std::vector<char> buffer(std::size_t(1) << 20);
        std::ofstream out;
        out.rdbuf()->pubsetbuf(buffer.data(), std::streamsize(buffer.size()));
        out.open(temp, std::ios::binary | std::ios::trunc);
        if (!out) {
            const std::string reason = std::strerror(errno);
            const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
            std::error_code ignored;
            if (!fs::is_directory(folder, ignored))
                message = path + ": the folder " + folder.string() + " does not exist";
            else
                message =
                    path + ": cannot write in the folder " + folder.string() + " (" + reason + ")";
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
