// Fuzzes the object-file reader. The first input byte chooses whether the checksums of the rest
// are recomputed before reading: kept, the fuzzer tests that damage is caught; resealed, it gets
// past the checksums and tests every length and count check behind them.
#include <qel/qel.h>
#include <qel/qel_json.h>

#include "format.h"

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <unistd.h>
#include <xxhash.h>

namespace {

std::uint64_t load64(const std::string& b, std::size_t at) {
    std::uint64_t v = 0;
    if (at <= b.size() && b.size() - at >= 8) std::memcpy(&v, b.data() + at, 8);
    return v;
}

void store64(std::string& b, std::size_t at, std::uint64_t v) {
    if (at <= b.size() && b.size() - at >= 8) std::memcpy(b.data() + at, &v, 8);
}

void reseal(std::string& b) {
    namespace h = qel::format::header;
    if (b.size() < qel::format::kHeaderSize) return;
    std::uint32_t count;
    std::memcpy(&count, b.data() + h::objectCount, 4);
    const std::uint64_t index = load64(b, h::indexOffset);
    if (index > b.size()) return;
    for (std::uint64_t i = 0; i < count && index + 24 * (i + 1) <= b.size(); ++i) {
        const std::uint64_t entry = index + 24 * i;
        const std::uint64_t offset = load64(b, entry), size = load64(b, entry + 8);
        if (offset <= b.size() && size <= b.size() - offset)
            store64(b, entry + 16, XXH3_64bits(b.data() + offset, size));
    }
    store64(b, h::tableChecksum, XXH3_64bits(b.data() + index, b.size() - index));
    store64(b, h::headerChecksum, XXH3_64bits(b.data(), h::headerChecksum));
}

std::string scratchPath() {
    const char* dir = access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp";
    return std::string(dir) + "/qel-fuzz-" + std::to_string(getpid()) + ".qel";
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::string path = scratchPath();
    static bool ready = (QelInit(0, 0, QelInitWords), true);
    (void)ready;
    if (size == 0) return 0;
    std::string bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
    if (data[0] & 1) reseal(bytes);
    if (FILE* f = std::fopen(path.c_str(), "wb")) {
        std::fwrite(bytes.data(), 1, bytes.size(), f);
        std::fclose(f);
    } else {
        return 0;
    }
    try {
        QelReader reader(path.c_str());
        for (unsigned id = 0; id < reader.GetObjectCount(); ++id) {
            try {
                QelObject* o = reader.ReadObject(id);
                if (o) {
                    (void)qeljson::objectToJson(*o);
                    o->UnRef();
                }
            } catch (const QelException&) {
            }
        }
        if (QelObject* header = reader.ReadObject("Header", 0)) header->UnRef();
    } catch (const QelException&) {
    }
    return 0;
}
