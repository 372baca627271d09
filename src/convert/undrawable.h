// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_UNDRAWABLE_H
#define BREVIO_UNDRAWABLE_H

#include <QFont>
#include <QString>
#include <QVector>

// The characters of text that neither font nor any fallback the toolkit
// finds for it can draw: drawText would show them as empty boxes or leave
// them out. Each code point is listed once, in the order of its first
// appearance; control and format characters, which are never drawn as
// glyphs, are not listed. Needs a QGuiApplication; safe on any thread.
QVector<uint> undrawableCharacters(const QString& text, const QFont& font);

#endif
