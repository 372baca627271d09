// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "stressfiles.h"

#include "pdfreport.h"
#include "testfiles.h"

#include <QDir>

namespace stressFiles {

int channelCount(int index) {
    return index % 4 == 0 ? 12 : 1 + index % 3;
}

QString name(int index) {
    return QStringLiteral("Anlage %1").arg(index);
}

QString location(int index) {
    return QStringLiteral("Halle %1, Geschoss %2").arg(index).arg(index % 7);
}

QString measure(int index) {
    return QStringLiteral("MESSGROESSE%1").arg(index);
}

QByteArray configuration(int index) {
    QString outputs;
    for (int channel = 1; channel <= channelCount(index); ++channel) {
        if (channel > 1)
            outputs += QLatin1Char(',');
        outputs += QStringLiteral(R"({"channel":%1,"range":0,"unit":9,"k_factor":%2,)"
                                  R"("producer":1,"response":2,"measure":{"measure":"%3",)"
                                  R"("unit":9,"rangeLow":0,"rangeHigh":%4}})")
                       .arg(channel)
                       .arg(index + channel)
                       .arg(measure(index))
                       .arg(100 * index + channel);
    }
    return QStringLiteral(R"({"configuration":{"name":"%1","date":"2026-03-%2T10:15:00",)"
                          R"("location":"%3","altitude":%4,"voltage":18.5,"measureSystem":1,)"
                          R"("version":"2.%5","outputs":[%6],"relais":[{"lowThreshold":%7,)"
                          R"("highThreshold":380,"states":[0,1],"measure":{"measure":"%8"}}],)"
                          R"("modbus":{"offset":0,"transmissionRate":19200,"address":%9,)"
                          R"("mode":1,"parity":0}}})")
        .arg(name(index))
        .arg(10 + index % 18)
        .arg(location(index))
        .arg(index)
        .arg(index)
        .arg(outputs)
        .arg(index)
        .arg(measure(index))
        .arg(index % 247 + 1)
        .toUtf8();
}

QString problemsInReport(const QString& reportPath, const QString& jsonPath, int index) {
    PdfReport report(reportPath);
    if (!report.isValid())
        return QStringLiteral("%1: not a readable PDF").arg(reportPath);
    const QStringList onFirstPage{
        QStringLiteral("Name: ") + name(index),
        QStringLiteral("Ort: ") + location(index),
        QStringLiteral("Höhe [m]: %1").arg(index),
        QStringLiteral("Versionsnummer: 2.%1").arg(index),
        QStringLiteral("Einheitensystem: Si"),
        QStringLiteral("2026-03-%1T10:15:00").arg(10 + index % 18),
        jsonPath,
        QStringLiteral("Ausgang 1: ") + measure(index),
    };
    const QStringList onSomePage{
        QStringLiteral("Ausgang %1: ").arg(channelCount(index)) + measure(index),
        QStringLiteral("Relais 1: ") + measure(index),
        QStringLiteral("Adresse: %1").arg(index % 247 + 1),
    };
    QStringList missing;
    for (const QString& text : onFirstPage)
        if (report.line(0, text).isNull())
            missing.append(text);
    for (const QString& text : onSomePage) {
        bool found = false;
        for (int page = 0; page < report.pageCount() && !found; ++page)
            found = !report.line(page, text).isNull();
        if (!found)
            missing.append(text);
    }
    if (missing.isEmpty())
        return QString();
    return QStringLiteral("%1: missing %2; page 1 holds: %3")
        .arg(reportPath, missing.join(QStringLiteral(", ")),
             report.texts(0).join(QStringLiteral(" | ")));
}

QStringList write(const QString& dir, int count) {
    QStringList paths;
    for (int index = 0; index < count; ++index)
        paths.append(
            writeFile(dir, QStringLiteral("anlage-%1.json").arg(index), configuration(index)));
    return paths;
}

} // namespace stressFiles
