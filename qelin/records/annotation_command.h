// QELANN: hides or restores the annotation texts of the groups of the selected entities.
#pragma once

void QelAnnCommand();
