#pragma once
// Where Info > Help goes when the classic help file is not there: the program's own documentation,
// installed beside the program or, in a build tree, the sources' README.

#include <QString>
#include <QStringList>

namespace tallybot::desktop {

// The places looked at, in order: <programFolder>/../share/doc/tallybot/README.md (an installed
// prefix), then the README of the source tree the program was built from.
QStringList DocumentationCandidates(const QString& programFolder);
// The first candidate that exists, or an empty text.
QString ProgramDocumentation(const QString& programFolder);

} // namespace tallybot::desktop
