// Part of every module that the program loads: which build of the program the module goes with.
// ProgramModule asks before it calls anything else.

#include <QtGlobal>

extern "C" Q_DECL_EXPORT const char *ortuModuleStamp()
{
    return ORTU_MODULE_STAMP;
}
