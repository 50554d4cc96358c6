// The two commands that start an import: QELIN with the dialog, QELINA from a script or a menu
// macro, with the file name at the prompt.
#pragma once

void QelInCommand();
void QelInaCommand();
