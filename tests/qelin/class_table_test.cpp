// The class table against itself and the catalogue: every dispatcher row held once, every class
// of the catalogue given a creator or a stated none, every code one row.
#include "import/class_table.h"
#include "objectfile/catalogue.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <strings.h>

namespace {

std::string lower(const char* text) {
    std::string out = text;
    for (char& c : out)
        c = char(std::tolower(static_cast<unsigned char>(c)));
    return out;
}

const char* label(const QelClassRow& row) {
    return row.className ? row.className : row.codeName;
}

TEST(ClassTable, EveryDispatcherRowIsHeldOnceByAClassOfTheCatalogue) {
    std::map<int, int> held;
    for (const QelClassRow& row : QelClassRows()) {
        if (row.dispatchRow == QelNotDispatched) {
            EXPECT_EQ(row.creator, nullptr) << "a creator no row reaches: " << label(row);
            continue;
        }
        ASSERT_NE(row.className, nullptr) << "row " << row.dispatchRow;
        EXPECT_NE(QelFindClass(row.className), nullptr) << row.className;
        EXPECT_NE(row.creator, nullptr) << row.className << " has no creator nor a stated none";
        ++held[row.dispatchRow];
    }
    for (int row = 0; row < QelDispatchRowCount; ++row) {
        EXPECT_EQ(held[row], 1) << "row " << row;
        ASSERT_NE(QelDispatchRow(row), nullptr) << "row " << row;
        EXPECT_EQ(QelDispatchRow(row)->dispatchRow, row);
    }
    EXPECT_EQ(held.size(), std::size_t(QelDispatchRowCount)) << "rows past the dispatcher's";
    EXPECT_EQ(QelDispatchRow(QelDispatchRowCount), nullptr);
    EXPECT_EQ(QelDispatchRow(-1), nullptr);
}

// A class the dispatcher doesn't know is read inside another object: its row says so with no
// dispatcher row and no creator.
TEST(ClassTable, EveryClassOfTheCatalogueHasExactlyOneRow) {
    std::map<std::string, int> rows;
    for (const QelClassRow& row : QelClassRows())
        if (row.className) {
            ++rows[lower(row.className)];
            EXPECT_NE(QelFindClass(row.className), nullptr)
                << row.className << " is not spelt as the catalogue has it";
        }
    for (const QelClassSpec& cls : QelCatalogue())
        EXPECT_EQ(rows[lower(cls.name)], 1) << cls.name;
}

TEST(ClassTable, EveryCodeIsOneRowWithOneName) {
    std::set<int> codes;
    std::set<std::string> names;
    for (const QelClassRow& row : QelClassRows()) {
        if (row.code == QelCode::NoCode) {
            EXPECT_EQ(row.codeName, nullptr);
            EXPECT_FALSE(row.hideable) << "a hidden class is hidden by its code";
            continue;
        }
        ASSERT_NE(row.codeName, nullptr) << row.code;
        EXPECT_TRUE(row.code >= 0 && row.code < QelCode::Count) << row.codeName;
        EXPECT_TRUE(codes.insert(row.code).second) << "code " << row.code << " twice";
        // The hidden-class text names codes without regard to case.
        EXPECT_TRUE(names.insert(lower(row.codeName)).second) << row.codeName;
        EXPECT_EQ(&QelClassOf(row.code), &row);
        // What a creator tags has its group's key with its name, or neither.
        EXPECT_EQ(row.groupName == nullptr, row.groupKey == nullptr) << row.codeName;
    }
    // Every class that makes something leaves records of its own code.
    for (const QelClassRow& row : QelClassRows()) {
        if (row.creator && row.creator != QelCreateNothing) {
            EXPECT_NE(row.code, QelCode::NoCode) << label(row);
        }
    }
    EXPECT_EQ(QelClassOf(QelCode::NoCode).code, QelCode::NoCode);
    EXPECT_EQ(QelClassOf(QelCode::Count).className, nullptr);
}

// The names the view may hide are the names of codes, so the fittings go by their code's name.
TEST(ClassTable, HiddenClassesAreNamedByTheirCodes) {
    unsigned number = 999;
    EXPECT_TRUE(QelHiddenClassNumber("pipeFLANGE", number));
    EXPECT_EQ(number, unsigned(QelCode::PipeFlange));
    EXPECT_TRUE(QelHiddenClassNumber("Flange", number));
    EXPECT_EQ(number, unsigned(QelCode::Flange));
    number = 999;
    for (const char* name : {"Tee", "GeometricGroup", "Pointset", "Layer", "", "Cylinder "})
        EXPECT_FALSE(QelHiddenClassNumber(name, number)) << name;
    EXPECT_FALSE(QelHiddenClassNumber(nullptr, number));
    EXPECT_EQ(number, 999u);
    int hideable = 0;
    for (const QelClassRow& row : QelClassRows())
        hideable += row.hideable;
    EXPECT_EQ(hideable, 23);
}

} // namespace
