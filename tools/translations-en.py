#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The Brevio developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Fills resources/translations/brevio_en.ts with the English texts below,
# after lupdate has brought the file up to date with the sources:
#   lupdate -no-obsolete -locations none -source-language de \
#       -target-language en src/convert src/app -ts resources/translations/brevio_en.ts
#   tools/translations-en.py
# A German text without an entry here stays unfinished, which tst_translations
# reports. Trailing blanks and line breaks match the German ones, since the
# report's layout puts values right after its labels.
import os
import sys
import xml.etree.ElementTree as ElementTree

ENGLISH = {
    # The window.
    "Speichern unter": "Save as",
    "Entfernen": "Remove",
    "Bericht umbenennen": "Rename report",
    "Konvertieren": "Convert",
    "Bericht öffnen": "Open report",
    "Ordner öffnen": "Open folder",
    "MainWindow": "MainWindow",
    "Öffnen": "Open",
    "Alle konvertieren": "Convert all",
    "Brevio [Beta]": "Brevio [Beta]",
    "Brevio": "Brevio",
    "Dateien öffnen": "Open files",
    "Fehler": "Error",
    "Die Datei ": "The file ",
    " befindest sich schon in der Liste": " is already in the list",
    # The report.
    "Quandel Protokoll vom:\n": "Quandel report of:\n",
    "Allgemeine Einstellungen:": "General settings:",
    "Name: ": "Name: ",
    "Ort: ": "Location: ",
    "Spannungsuntergrenze [V]: ": "Lower voltage limit [V]: ",
    "Versionsnummer: ": "Version number: ",
    "Einheitensystem: ": "Unit system: ",
    "Höhe [m]: ": "Altitude [m]: ",
    "Ausgang ": "Output ",
    "Einheit: ": "Unit: ",
    "Messbereich Untergrenze: ": "Measuring range lower limit: ",
    "Messbereich Obergrenze: ": "Measuring range upper limit: ",
    "K-Faktor: ": "K factor: ",
    "Hersteller: ": "Manufacturer: ",
    "Ansprechzeit [s]: ": "Response time [s]: ",
    "Unbekannst: Id ": "Unknown: Id ",
    "Display: ": "Display: ",
    "Status: ": "Status: ",
    "Display vorhanden": "Display present",
    "Kein Display vorhanden": "No display present",
    "Helligkeit[%]: ": "Brightness[%]: ",
    "Rotation[°]: ": "Rotation[°]: ",
    "TLF aktiviert: ": "TLF enabled: ",
    "Nein": "No",
    "Ja": "Yes",
    "TLF:": "TLF:",
    "Messgröße: ": "Measured variable: ",
    "Enabled: ": "Enabled: ",
    "Schwellwert 1: ": "Threshold 1: ",
    "Schwellwert 2: ": "Threshold 2: ",
    "Farbe Bereich 1: ": "Colour range 1: ",
    "Farbe Bereich 2: ": "Colour range 2: ",
    "Farbe Bereich 3: ": "Colour range 3: ",
    "Grün": "Green",
    "Gelb": "Yellow",
    "Rot": "Red",
    "Relais": "Relay",
    "Zustand %1: ": "State %1: ",
    "Geöffnet": "Open",
    "Geschlossen": "Closed",
    "Modbus": "Modbus",
    "Offset: ": "Offset: ",
    "Baudrate: ": "Baud rate: ",
    "Adresse: ": "Address: ",
    "Übertragungsart: ": "Transmission mode: ",
    "Parität: ": "Parity: ",
    "Service: ": "Service: ",
    "Letzter Service: ": "Last service: ",
    "Nächster Service: ": "Next service: ",
    "Tage": "days",
    "Letzte Kalibrierung: ": "Last calibration: ",
    "Nächste  Kalibirierung: ": "Next calibration: ",
}


def main():
    root = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..")
    path = os.path.join(root, "resources", "translations", "brevio_en.ts")
    tree = ElementTree.parse(path)
    missing = []
    for message in tree.iter("message"):
        source = message.find("source").text
        translation = message.find("translation")
        if source in ENGLISH:
            translation.text = ENGLISH[source]
            translation.attrib.pop("type", None)
        else:
            missing.append(source)
    with open(path, "w", encoding="utf-8") as out:
        out.write('<?xml version="1.0" encoding="utf-8"?>\n<!DOCTYPE TS>\n')
        out.write(ElementTree.tostring(tree.getroot(), encoding="unicode"))
        out.write("\n")
    if missing:
        print("no English for: %r" % missing, file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
