#include "arx/acadstrc.h"

const ACHAR* acadErrorStatusText(Acad::ErrorStatus status) {
    switch (status) {
#define ACAD_ERROR_STATUS_TEXT(name, value)                                                        \
    case Acad::name:                                                                               \
        return ACRX_T(#name);
        ACAD_ERROR_STATUS_LIST(ACAD_ERROR_STATUS_TEXT)
#undef ACAD_ERROR_STATUS_TEXT
    }
    return ACRX_T("Unknown error status");
}
