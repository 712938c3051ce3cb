#include "gui/program_documentation.h"

#include <QDir>
#include <QFileInfo>

namespace tallybot::desktop {

QStringList DocumentationCandidates(const QString& programFolder) {
    QStringList candidates{QDir(programFolder).absoluteFilePath("../share/doc/tallybot/README.md")};
#ifdef TALLYBOT_SOURCE_README
    candidates << QString(TALLYBOT_SOURCE_README);
#endif
    return candidates;
}

QString ProgramDocumentation(const QString& programFolder) {
    for (const QString& candidate : DocumentationCandidates(programFolder))
        if (QFileInfo(candidate).isFile()) return QFileInfo(candidate).absoluteFilePath();
    return {};
}

} // namespace tallybot::desktop
