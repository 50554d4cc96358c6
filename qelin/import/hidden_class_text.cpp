#include "hidden_class_text.h"

#include "import/class_table.h"

#include <string>

void QelParseHiddenClasses(const char* text, QelArray<unsigned>& numbers) {
    numbers.RemoveAll();
    std::string token;
    for (const char* c = text; c && *c; ++c) {
        if (*c != ',') {
            token += *c;
            continue;
        }
        unsigned number = 0;
        if (QelHiddenClassNumber(token.c_str(), number)) numbers.Append(number);
        token.clear();
    }
}
