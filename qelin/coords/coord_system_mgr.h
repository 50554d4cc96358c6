// The choice of the file's coordinate system that becomes the host's world, the file's saved
// systems as named UCSs, and the file's current UCS put back after an import.
#pragma once

#include <qel/qel.h>
#include <win/win.h>

#include <vector>

class AcDbEntity;

struct CoordSystemEntry {
    CString name;
    double translation[3] = {0.0, 0.0, 0.0};
    double rotation[4] = {0.0, 0.0, 1.0, 0.0}; // axis x, y, z, angle in radians
};

class CCoordSystemMgr : public CDialog {
public:
    enum { IDD = 1005 };
    enum { IDC_SYSTEMS = 1027 };

    CCoordSystemMgr();
    ~CCoordSystemMgr() override;

    // Lists "<None>", "<Default>", the saved systems (and "<Unsaved>" when the current one is
    // none of them) and asks the user, unless every choice is the identity. 1, or 2 when the
    // user cancelled. The choice itself goes to the document's record.
    int selectCoordinateSystem(QelReader* reader, double translationOut[3], double rotationOut[4]);
    // Sets the host's UCS to the file's current one, under the chosen mapping.
    void restoreViewCoordinateSystem(QelReader* reader);
    // Moves an entity from the chosen system of the file into the world.
    static void mapSelectedToWorld(AcDbEntity* entity);

    const std::vector<CoordSystemEntry>& Entries() const { return *entries; }
    int Selected() const { return selected; }

protected:
    void DoDataExchange(CDataExchange* dx) override;
    BOOL OnInitDialog() override;
    void OnSelect();
    void OnCancelChoice();
    DECLARE_MESSAGE_MAP()

private:
    void loadSavedCoordinateSystems(QelObject* coordSysMgr);

    CString text;
    QelReader* reader = nullptr;
    CListBox list;
    double rotation[4] = {0.0, 0.0, 1.0, 0.0};
    double translation[3] = {0.0, 0.0, 0.0};
    QelObject* modelObject = nullptr;
    std::vector<CoordSystemEntry>* entries = nullptr;
    int selected = 0;
};

// The origin, X direction and Y direction in the world of a system of the file.
void QelFrameFromTransformation(const double translation[3], const double rotation[4],
                                double origin[3], double xDirection[3], double yDirection[3]);
