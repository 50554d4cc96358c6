#include "drawing_summary.h"

#include <qel/qel.h>

#include <map>
#include <ostream>
#include <string>
#include <vector>

namespace qelcad {

void printObjectFileSummary(std::ostream& out, const std::string& path) {
    try {
        QelInit(0, 0, QelInitWords);
        QelReader reader(path.c_str());
        const unsigned count = reader.GetObjectCount();
        // Classes in the order they first appear, with their counts.
        std::vector<std::string> order;
        std::map<std::string, unsigned> counts;
        for (unsigned i = 0; i < count; ++i) {
            QelObject* object = reader.ReadObject(i);
            if (!object) continue;
            const std::string name = object->GetName();
            if (counts[name]++ == 0) order.push_back(name);
            object->UnRef();
        }
        out << "Object file: " << path << "\nObjects (" << count << "):";
        for (const std::string& name : order)
            out << " " << name << " x" << counts[name];
        out << "\n";
    } catch (const QelException& e) {
        out << "Object file: " << path << " cannot be read: " << e.GetReason() << "\n";
    }
}

} // namespace qelcad
