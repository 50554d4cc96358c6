// The export's object-type table against the catalogue and the codes member records keep.
#include "export/object_types.h"
#include "import/class_table.h"
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
    for (const QelClassRow& imported : QelClassRows()) {
        if (imported.code == QelCode::NoCode) continue;
        const QelObjectTypeRow* row = QelTypeRow(imported.code);
        ASSERT_NE(row, nullptr) << imported.codeName;
        EXPECT_STREQ(row->name, imported.codeName) << imported.code;
    }
}

TEST(ObjectTypeTable, ClassColumnNamesOwnOtherOrNone) {
    EXPECT_STREQ(QelObjectTypeClass(*QelTypeRow(QelCode::Cylinder)), "Cylinder");
    EXPECT_STREQ(QelObjectTypeClass(*QelTypeRow(QelCode::Text)), "Vertex3d");
    EXPECT_STREQ(QelObjectTypeClass(*QelTypeRow(QelCode::PipeFlange)), "Flange");
    EXPECT_EQ(QelObjectTypeClass(*QelTypeRow(QelCode::ContourObj)), nullptr);
    EXPECT_EQ(QelObjectTypeClass(*QelTypeRow(QelCode::Unknown3dSolid)), nullptr);
    for (int code : {QelCode::Valve, QelCode::TriMesh, QelCode::ContourObj, QelCode::PipeFlange,
                     QelCode::PipeTee})
        EXPECT_EQ(QelTypeRow(code)->tagRule, QelTagRule::Grouped) << code;
}
