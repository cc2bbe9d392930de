#pragma once

#include "zelModelSupport/ZelModelSupportExport.h"

class QString;

/// What the library itself says to the user in boxes. A host that says it in its own way derives
/// from this and calls setCurrent().
///
/// All of it belongs to the thread of the application's widgets.
class ZELMODELSUPPORT_EXPORT ZelDialogs
{
public:
    ZelDialogs() = default;
    /// One that is in use gives way to the library's own.
    virtual ~ZelDialogs();
    ZelDialogs(const ZelDialogs &) = delete;
    ZelDialogs &operator=(const ZelDialogs &) = delete;

    /// Says why something that the user asked for was not done, a sentence. The library's own is a
    /// modal box, or the debug output in a program without widgets, and returns when the user has
    /// closed it; another may return at once.
    virtual void tellRefusal(const QString &reason);

    /// Those in use; never null.
    static ZelDialogs *current();
    /// Null brings the library's own back. Not owned.
    static void setCurrent(ZelDialogs *dialogs);
};
