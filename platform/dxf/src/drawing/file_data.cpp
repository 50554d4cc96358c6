#include "file_data.h"

#include <arx/dbhost.h>

namespace dxf {

std::shared_ptr<FileData> fileDataOf(AcDbDatabase* db) {
    auto data = std::static_pointer_cast<FileData>(acdbHostFileData(db));
    if (data == nullptr) {
        data = std::make_shared<FileData>();
        acdbHostSetFileData(db, data);
    }
    return data;
}

} // namespace dxf
