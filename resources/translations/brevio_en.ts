<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="de">
<context>
    <name>ListWidgetContainer</name>
    <message>
        <source>Speichern unter</source>
        <translation>Save as</translation>
    </message>
    <message>
        <source>Entfernen</source>
        <translation>Remove</translation>
    </message>
    <message>
        <source>Bericht umbenennen</source>
        <translation>Rename report</translation>
    </message>
    <message>
        <source>Konvertieren</source>
        <translation>Convert</translation>
    </message>
    <message>
        <source>Bericht öffnen</source>
        <translation>Open report</translation>
    </message>
    <message>
        <source>Ordner öffnen</source>
        <translation>Open folder</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>MainWindow</source>
        <translation>MainWindow</translation>
    </message>
    <message>
        <source>Öffnen</source>
        <translation>Open</translation>
    </message>
    <message>
        <source>Alle konvertieren</source>
        <translation>Convert all</translation>
    </message>
    <message>
        <source>Brevio [Beta]</source>
        <translation>Brevio [Beta]</translation>
    </message>
    <message>
        <source>Brevio</source>
        <translation>Brevio</translation>
    </message>
    <message>
        <source>Dateien öffnen</source>
        <translation>Open files</translation>
    </message>
    <message>
        <source>Fehler</source>
        <translation>Error</translation>
    </message>
    <message>
        <source>Die Datei </source>
        <translation>The file </translation>
    </message>
    <message>
        <source> befindest sich schon in der Liste</source>
        <translation> is already in the list</translation>
    </message>
</context>
<context>
    <name>convert</name>
    <message>
        <source>Display: </source>
        <translation>Display: </translation>
    </message>
    <message>
        <source>Status: </source>
        <translation>Status: </translation>
    </message>
    <message>
        <source>Display vorhanden</source>
        <translation>Display present</translation>
    </message>
    <message>
        <source>Kein Display vorhanden</source>
        <translation>No display present</translation>
    </message>
    <message>
        <source>Helligkeit[%]: </source>
        <translation>Brightness[%]: </translation>
    </message>
    <message>
        <source>Rotation[°]: </source>
        <translation>Rotation[°]: </translation>
    </message>
    <message>
        <source>TLF aktiviert: </source>
        <translation>TLF enabled: </translation>
    </message>
    <message>
        <source>Nein</source>
        <translation>No</translation>
    </message>
    <message>
        <source>Ja</source>
        <translation>Yes</translation>
    </message>
    <message>
        <source>Modbus</source>
        <translation>Modbus</translation>
    </message>
    <message>
        <source>Offset: </source>
        <translation>Offset: </translation>
    </message>
    <message>
        <source>Baudrate: </source>
        <translation>Baud rate: </translation>
    </message>
    <message>
        <source>Adresse: </source>
        <translation>Address: </translation>
    </message>
    <message>
        <source>Übertragungsart: </source>
        <translation>Transmission mode: </translation>
    </message>
    <message>
        <source>Parität: </source>
        <translation>Parity: </translation>
    </message>
    <message>
        <source>Service: </source>
        <translation>Service: </translation>
    </message>
    <message>
        <source>Letzter Service: </source>
        <translation>Last service: </translation>
    </message>
    <message>
        <source>Nächster Service: </source>
        <translation>Next service: </translation>
    </message>
    <message>
        <source>Tage</source>
        <translation>days</translation>
    </message>
    <message>
        <source>Letzte Kalibrierung: </source>
        <translation>Last calibration: </translation>
    </message>
    <message>
        <source>Nächste  Kalibirierung: </source>
        <translation>Next calibration: </translation>
    </message>
    <message>
        <source>Unbekannst: Id </source>
        <translation>Unknown: Id </translation>
    </message>
    <message>
        <source>Ausgang </source>
        <translation>Output </translation>
    </message>
    <message>
        <source>Einheit: </source>
        <translation>Unit: </translation>
    </message>
    <message>
        <source>Messbereich Untergrenze: </source>
        <translation>Measuring range lower limit: </translation>
    </message>
    <message>
        <source>Messbereich Obergrenze: </source>
        <translation>Measuring range upper limit: </translation>
    </message>
    <message>
        <source>K-Faktor: </source>
        <translation>K factor: </translation>
    </message>
    <message>
        <source>Hersteller: </source>
        <translation>Manufacturer: </translation>
    </message>
    <message>
        <source>Ansprechzeit [s]: </source>
        <translation>Response time [s]: </translation>
    </message>
    <message>
        <source>Relais</source>
        <translation>Relay</translation>
    </message>
    <message>
        <source>Schwellwert 1: </source>
        <translation>Threshold 1: </translation>
    </message>
    <message>
        <source>Schwellwert 2: </source>
        <translation>Threshold 2: </translation>
    </message>
    <message>
        <source>Geöffnet</source>
        <translation>Open</translation>
    </message>
    <message>
        <source>Geschlossen</source>
        <translation>Closed</translation>
    </message>
    <message>
        <source>Zustand %1: </source>
        <translation>State %1: </translation>
    </message>
    <message>
        <source>Quandel Protokoll vom:
</source>
        <translation>Quandel report of:
</translation>
    </message>
    <message>
        <source>Allgemeine Einstellungen:</source>
        <translation>General settings:</translation>
    </message>
    <message>
        <source>Name: </source>
        <translation>Name: </translation>
    </message>
    <message>
        <source>Ort: </source>
        <translation>Location: </translation>
    </message>
    <message>
        <source>Spannungsuntergrenze [V]: </source>
        <translation>Lower voltage limit [V]: </translation>
    </message>
    <message>
        <source>Versionsnummer: </source>
        <translation>Version number: </translation>
    </message>
    <message>
        <source>Einheitensystem: </source>
        <translation>Unit system: </translation>
    </message>
    <message>
        <source>Höhe [m]: </source>
        <translation>Altitude [m]: </translation>
    </message>
    <message>
        <source>Gelb</source>
        <translation>Yellow</translation>
    </message>
    <message>
        <source>Rot</source>
        <translation>Red</translation>
    </message>
    <message>
        <source>Grün</source>
        <translation>Green</translation>
    </message>
    <message>
        <source>TLF:</source>
        <translation>TLF:</translation>
    </message>
    <message>
        <source>Messgröße: </source>
        <translation>Measured variable: </translation>
    </message>
    <message>
        <source>Enabled: </source>
        <translation>Enabled: </translation>
    </message>
    <message>
        <source>Farbe Bereich 1: </source>
        <translation>Colour range 1: </translation>
    </message>
    <message>
        <source>Farbe Bereich 2: </source>
        <translation>Colour range 2: </translation>
    </message>
    <message>
        <source>Farbe Bereich 3: </source>
        <translation>Colour range 3: </translation>
    </message>
</context>
</TS>
