#include "fuzz/Fuzz.h"
#include "support/DelimitedText.h"

#include <QStringList>

void fuzz(const QByteArray &bytes)
{
    for (const QVariantMap &record : DelimitedText::records(DelimitedText::decoded(bytes))) {
        require(!record.isEmpty() && record.size() <= DelimitedText::maximumColumns);
    }
}
