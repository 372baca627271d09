// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_JSONRECORD_H
#define BREVIO_JSONRECORD_H

#include <QJsonObject>
#include <QJsonValue>
#include <QVariant>
#include <QVector>

#include <initializer_list>

// Appends QJsonValue::toVariant() of each key, in the given order. A missing
// member appends a null variant, so every section keeps its fixed indices.
inline void appendMembers(QVector<QVariant>& values, const QJsonObject& object,
                          std::initializer_list<const char*> keys) {
    for (const char* key : keys)
        values.append(object.value(QLatin1String(key)).toVariant());
}

// The nested "measure" object shared by output channels, relays and the
// traffic-light function: seven entries, missing or mistyped object included.
inline void appendMeasure(QVector<QVariant>& values, const QJsonObject& owner) {
    appendMembers(values, owner.value(QLatin1String("measure")).toObject(),
                  {"measure", "unit", "rangeLow", "rangeHigh", "value", "channel", "register"});
}

#endif
