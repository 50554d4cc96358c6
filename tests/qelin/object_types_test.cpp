// The export's object-type table against the catalogue and the codes member records keep.
#include "export/object_types.h"
#include "objectfile/catalogue.h"

#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <string>

namespace {

// Rows whose objects are made by their writers under another class, never from the column.
bool madeByItsWriter(const QelObjectTypeRow& row) {
    return row.handling == QelExportHandling::PolylinePatch ||
           row.handling == QelExportHandling::Solid2d || row.handling == QelExportHandling::Nothing;
}

} // namespace

TEST(ObjectTypeTable, EveryCodeHasARowAndEveryClassIsInTheCatalogue) {
    ASSERT_EQ(objectTypeTable().size(), std::size_t(QelObjectTypeCount));
    std::set<std::string> names;
    for (int code = 0; code < QelObjectTypeCount; ++code) {
        const QelObjectTypeRow* row = QelTypeRow(code);
        ASSERT_NE(row, nullptr) << code;
        EXPECT_EQ(row, &objectTypeTable()[std::size_t(code)]);
        EXPECT_TRUE(names.insert(row->name).second) << "twice: " << row->name;
        const char* className = QelObjectTypeClass(*row);
        if (className && !madeByItsWriter(*row)) {
            EXPECT_NE(QelFindClass(className), nullptr)
                << code << " " << row->name << ": " << className;
        }
    }
    EXPECT_EQ(QelTypeRow(-1), nullptr);
    EXPECT_EQ(QelTypeRow(QelObjectTypeCount), nullptr);
}

// A member record keeps a code; the import and the export must mean the same row by it.
TEST(ObjectTypeTable, AgreesWithTheCodesOfTheImport) {
    for (const QelTypeCode& code : QelImportTypeCodes()) {
        const QelObjectTypeRow* row = QelTypeRow(int(code.code));
        ASSERT_NE(row, nullptr) << code.name;
        EXPECT_STREQ(row->name, code.name) << code.code;
    }
}

TEST(ObjectTypeTable, ClassColumnNamesOwnOtherOrNone) {
    EXPECT_STREQ(QelObjectTypeClass(*QelTypeRow(9)), "Cylinder");  // own
    EXPECT_STREQ(QelObjectTypeClass(*QelTypeRow(29)), "Vertex3d"); // Text
    EXPECT_STREQ(QelObjectTypeClass(*QelTypeRow(53)), "Flange");   // PipeFlange
    EXPECT_EQ(QelObjectTypeClass(*QelTypeRow(37)), nullptr);       // ContourObj
    EXPECT_EQ(QelObjectTypeClass(*QelTypeRow(39)), nullptr);       // Unknown3dSolid
    for (int code : {16, 36, 37, 53, 54})
        EXPECT_EQ(QelTypeRow(code)->tagRule, QelTagRule::Grouped) << code;
}
