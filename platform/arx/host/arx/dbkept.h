// Entities and objects of kinds the host does not model, kept from a drawing file as they were
// read so that saving writes them back unchanged. Host side only: the module never sees them
// as anything but entities and objects.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "arx/dbmain.h"

// One group as it stood in the file: its code and the text of its value.
using AcDbKeptGroup = std::pair<short, std::string>;
using AcDbKeptGroups = std::vector<AcDbKeptGroup>;

// The groups after the common part: for an entity what follows its layer, colour and
// visibility (those live on the entity); for an object everything after its owner.
class AcDbKeptObject : public AcDbObject {
public:
    ACRX_DECLARE_MEMBERS(AcDbKeptObject);
    AcDbKeptObject() = default;
    AcDbKeptObject(std::string dxfName, AcDbKeptGroups groups)
        : dxfName_(std::move(dxfName)), groups_(std::move(groups)) {}
    AcRxObject* clone() const override { return new AcDbKeptObject(*this); }

    const std::string& dxfName() const { return dxfName_; }
    const AcDbKeptGroups& groups() const { return groups_; }
    // The value of the first group with this code, or null.
    const std::string* find(short code) const;

private:
    std::string dxfName_;
    AcDbKeptGroups groups_;
};

class AcDbKeptEntity : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbKeptEntity);
    AcDbKeptEntity() = default;
    AcDbKeptEntity(std::string dxfName, AcDbKeptGroups groups)
        : dxfName_(std::move(dxfName)), groups_(std::move(groups)) {}
    AcRxObject* clone() const override { return new AcDbKeptEntity(*this); }

    const std::string& dxfName() const { return dxfName_; }
    const AcDbKeptGroups& groups() const { return groups_; }

private:
    std::string dxfName_;
    AcDbKeptGroups groups_;
};
