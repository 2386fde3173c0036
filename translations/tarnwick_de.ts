<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>QAbstractSocket</name>
    <message>
        <source>Socket is not connected</source>
        <translation>Socket ist nicht verbunden</translation>
    </message>
</context>
<context>
    <name>tarnwick::AppModel</name>
    <message>
        <source>Discovery failed: %1</source>
        <translation>Die Suche nach Maschinen ist fehlgeschlagen: %1</translation>
    </message>
    <message>
        <source>Connection check failed: %1</source>
        <translation>Die Verbindungsprüfung ist fehlgeschlagen: %1</translation>
    </message>
    <message>
        <source>Manual machine</source>
        <translation>Manuelle Maschine</translation>
    </message>
</context>
<context>
    <name>tarnwick::CancellationError</name>
    <message>
        <source>The operation was cancelled.</source>
        <translation>Der Vorgang wurde abgebrochen.</translation>
    </message>
</context>
<context>
    <name>tarnwick::DiscoveryPacketError</name>
    <message>
        <source>The announcement is not valid UTF-8 text.</source>
        <translation>Die Netzwerkmeldung ist kein gültiger UTF-8-Text.</translation>
    </message>
    <message>
        <source>The announcement has fewer than four fields.</source>
        <translation>Die Netzwerkmeldung hat weniger als vier Felder.</translation>
    </message>
    <message>
        <source>The address is not a valid IPv4 address.</source>
        <translation>Die Adresse ist keine gültige IPv4-Adresse.</translation>
    </message>
    <message>
        <source>The port is not a number from 1 to 65535.</source>
        <translation>Der Port ist keine Zahl von 1 bis 65535.</translation>
    </message>
</context>
<context>
    <name>tarnwick::JobFile</name>
    <message>
        <source>No such file or directory</source>
        <translation>Datei oder Ordner nicht gefunden</translation>
    </message>
    <message>
        <source>“%1” could not be opened: %2.</source>
        <translation>„%1“ konnte nicht geöffnet werden: %2.</translation>
    </message>
</context>
<context>
    <name>tarnwick::JobFileError</name>
    <message>
        <source>The .%1 extension is not supported. Choose an .nc, .cnc or .gcode file.</source>
        <translation>Die Dateiendung .%1 wird nicht unterstützt. Wählen Sie eine .nc-, .cnc- oder .gcode-Datei.</translation>
    </message>
    <message>
        <source>Please choose a regular file.</source>
        <translation>Bitte wählen Sie eine normale Datei.</translation>
    </message>
    <message>
        <source>The job file changed while it was being sent.</source>
        <translation>Die Auftragsdatei wurde während des Sendens geändert.</translation>
    </message>
</context>
<context>
    <name>tarnwick::LoadedJobFile</name>
    <message>
        <source>“%1” could not be read: %2.</source>
        <translation>„%1“ konnte nicht gelesen werden: %2.</translation>
    </message>
</context>
<context>
    <name>tarnwick::MakeraConnection</name>
    <message>
        <source>The machine closed the connection.</source>
        <translation>Die Maschine hat die Verbindung geschlossen.</translation>
    </message>
    <message>
        <source>%1 is not a usable TCP port.</source>
        <translation>%1 ist kein verwendbarer TCP-Port.</translation>
    </message>
</context>
<context>
    <name>tarnwick::MakeraDiscoveryDatagram</name>
    <message>
        <source>Makera machine</source>
        <translation>Makera-Maschine</translation>
    </message>
</context>
<context>
    <name>tarnwick::MakeraFileUploader</name>
    <message>
        <source>%1 is empty.</source>
        <translation>%1 ist leer.</translation>
    </message>
    <message>
        <source>%1 is too large to send.</source>
        <translation>%1 ist zu groß zum Senden.</translation>
    </message>
    <message>
        <source>The machine cancelled the transfer.</source>
        <translation>Die Maschine hat die Übertragung abgebrochen.</translation>
    </message>
</context>
<context>
    <name>tarnwick::MakeraFilename</name>
    <message>
        <source>The filename contains a path separator.</source>
        <translation>Der Dateiname enthält ein Pfadtrennzeichen.</translation>
    </message>
</context>
<context>
    <name>tarnwick::MakeraPacketError</name>
    <message>
        <source>The machine sent a packet with an invalid header (%1).</source>
        <translation>Die Maschine hat ein Paket mit ungültigem Kopf gesendet (%1).</translation>
    </message>
    <message>
        <source>The machine sent a packet with an invalid footer (%1).</source>
        <translation>Die Maschine hat ein Paket mit ungültigem Abschluss gesendet (%1).</translation>
    </message>
    <message>
        <source>The machine sent a packet with an invalid length (%1).</source>
        <translation>Die Maschine hat ein Paket mit ungültiger Länge gesendet (%1).</translation>
    </message>
    <message>
        <source>The packet is too large to send (length %1, at most 8200).</source>
        <translation>Das Paket ist zu groß zum Senden (Länge %1, höchstens 8200).</translation>
    </message>
    <message>
        <source>The machine sent a packet of unknown type %1.</source>
        <translation>Die Maschine hat ein Paket unbekannten Typs %1 gesendet.</translation>
    </message>
    <message>
        <source>The machine sent a packet with a wrong checksum (computed %1, received %2).</source>
        <translation>Die Maschine hat ein Paket mit falscher Prüfsumme gesendet (berechnet %1, empfangen %2).</translation>
    </message>
    <message>
        <source>The machine sent a packet that was cut short.</source>
        <translation>Die Maschine hat ein unvollständiges Paket gesendet.</translation>
    </message>
</context>
<context>
    <name>tarnwick::MakeraUploadSession</name>
    <message>
        <source>Retry arrived before any transfer packet.</source>
        <translation>Die Maschine hat eine Wiederholung angefordert, bevor ein Datenpaket gesendet wurde.</translation>
    </message>
    <message>
        <source>Requested chunk %1 is outside 1...%2.</source>
        <translation>Der angeforderte Block %1 liegt außerhalb von 1...%2.</translation>
    </message>
</context>
<context>
    <name>tarnwick::TcpConnectionCheck</name>
    <message>
        <source>%1 is not an IP address.</source>
        <translation>%1 ist keine IP-Adresse.</translation>
    </message>
    <message>
        <source>Port 0 cannot be connected to.</source>
        <translation>Mit Port 0 kann keine Verbindung hergestellt werden.</translation>
    </message>
</context>
<context>
    <name>tarnwick::UpdateChecker</name>
    <message>
        <source>The update feed at %1 could not be read.</source>
        <translation>Die Versionsinformationen unter %1 konnten nicht gelesen werden.</translation>
    </message>
</context>
<context>
    <name>tarnwick::UploadError</name>
    <message>
        <source>The machine rejected the upload: %1</source>
        <translation>Die Maschine hat das Hochladen abgelehnt: %1</translation>
    </message>
    <message>
        <source>The machine returned an invalid response: %1</source>
        <translation>Die Maschine hat ungültig geantwortet: %1</translation>
    </message>
    <message>
        <source>The upload was cancelled.</source>
        <translation>Das Hochladen wurde abgebrochen.</translation>
    </message>
    <message>
        <source>The machine did not respond before the upload timed out.</source>
        <translation>Die Maschine hat nicht geantwortet, bevor die Zeit für das Hochladen abgelaufen war.</translation>
    </message>
</context>
</TS>
