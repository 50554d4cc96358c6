// The file's layers as host layers: legal names, colours, the view's overrides, the temporary
// layers of an import, and the layer made current while its objects are created.
#pragma once

#include "foundation/growing_array.h"
#include "import/qel_job.h"

#include <qel/qel.h>
#include <win/win.h>

inline constexpr const wchar_t* QelExclusionVolumeLayer = L"z_VelmoraExclusionVolume";
inline constexpr const wchar_t* QelDefaultLayer = L"z_VelmoraDefaultLayer";
inline constexpr const wchar_t* QelTempLayer = L"z_VelmoraTemp_Layer";

// Characters no layer name may hold (the slash stands twice); the double quote is refused too.
inline constexpr const wchar_t* QelInvalidLayerChars = L"<>//:\\?*|,=`";

// True when the name holds no invalid character and no double quote. Empty names are valid.
bool QelIsValidLayerName(LPCWSTR name);
// One sanitising pass: replaces the first invalid character, double quotes and backslashes by
// '_', escapes control characters ("_t" for a tab...) and question marks ("_?"). True when the
// output is final.
bool QelSanitiseLayerNamePass(LPCWSTR name, CString& out);
// Passes until the name is final; "Unknown" when that can't be reached.
CString QelSanitiseLayerName(const CString& name);

// A new layer of that colour. False when the drawing has it already or it can't be made.
bool QelCreateLayer(LPCWSTR name, unsigned char red, unsigned char green, unsigned char blue);
// Makes the exclusion-volume and default layers if needed, and turns them off.
void QelEnsureTemporaryLayers();
// Erases the three temporary layers that nothing holds on to any more.
void QelPurgeTemporaryLayers();

// What the layer loop carries from one layer to the next.
struct QelLayerLoopState {
    CString name;
    int pendingFreeze = 0;
    unsigned index = 0;
};

// Makes the layer of the file object ready for its objects: legal name, made with its colour
// if new, current, the view's override for state.index applied (overrides may be null).
void QelPrepareLayer(QelJob& job, QelLayerLoopState& state, QelObject* layer, bool hasObjectList,
                     const QelArray<unsigned>* overrides);
