#include "jet/Bytes.h"

#include "platform/Database.h"

namespace jet {

void ThrowDamaged(PageNumber page, TextView what)
{
    throw DatabaseError(u"The database is damaged (page " + DecimalText(page) + u"): " + Text(what));
}

void ThrowCutShort(PageNumber page)
{
    ThrowDamaged(page, u"something is cut short");
}

void ThrowForeignLayout(PageNumber page, TextView what)
{
    throw DatabaseError(u"The database has a layout that this program does not extend (page " +
                        DecimalText(page) + u"): " + Text(what));
}

} // namespace jet
