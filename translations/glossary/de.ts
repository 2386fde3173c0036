<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>Glossary</name>
    <message>
        <source>&amp;File</source>
        <translation type="vanished">&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation type="vanished">&amp;Hilfe</translation>
    </message>
    <message>
        <source>About Tarnwick</source>
        <translation type="vanished">Über Tarnwick</translation>
    </message>
    <message>
        <source>About</source>
        <translation type="vanished">Über</translation>
    </message>
    <message>
        <source>Check for Updates…</source>
        <translation type="vanished">Nach Updates suchen…</translation>
    </message>
    <message>
        <source>Choose Job File…</source>
        <translation type="vanished">Auftragsdatei wählen…</translation>
    </message>
    <message>
        <source>Settings…</source>
        <translation type="vanished">Einstellungen…</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation type="vanished">Einstellungen</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation type="vanished">Beenden</translation>
    </message>
    <message>
        <source>Updates</source>
        <translation type="vanished">Updates</translation>
    </message>
    <message>
        <source>Check for updates automatically</source>
        <translation type="vanished">Automatisch nach Updates suchen</translation>
    </message>
    <message>
        <source>Send job files to a Makera CNC without starting them.</source>
        <translation type="vanished">Sendet Auftragsdateien an eine Makera-CNC, ohne sie zu starten.</translation>
    </message>
    <message>
        <source>Upload only</source>
        <translation type="vanished">Nur hochladen</translation>
    </message>
    <message>
        <source>%1 never opens, selects or starts a job and contains no motion-control commands.</source>
        <translation type="vanished">%1 öffnet, wählt oder startet nie einen Auftrag und enthält keine Bewegungsbefehle.</translation>
    </message>
    <message>
        <source>Machines</source>
        <translation type="vanished">Maschinen</translation>
    </message>
    <message>
        <source>Local network</source>
        <translation type="vanished">Lokales Netzwerk</translation>
    </message>
    <message>
        <source>Scan for Makera machines</source>
        <translation type="vanished">Nach Makera-Maschinen suchen</translation>
    </message>
    <message>
        <source>Enter IP address</source>
        <translation type="vanished">IP-Adresse eingeben</translation>
    </message>
    <message>
        <source>IP address</source>
        <translation type="vanished">IP-Adresse</translation>
    </message>
    <message>
        <source>Port</source>
        <translation type="vanished">Port</translation>
    </message>
    <message>
        <source>Add</source>
        <translation type="vanished">Hinzufügen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="vanished">Abbrechen</translation>
    </message>
    <message>
        <source>Enter a valid IPv4 address and port.</source>
        <translation type="vanished">Geben Sie eine gültige IPv4-Adresse und einen Port ein.</translation>
    </message>
    <message>
        <source>Destination</source>
        <translation type="vanished">Ziel</translation>
    </message>
    <message>
        <source>Choose a destination</source>
        <translation type="vanished">Ziel wählen</translation>
    </message>
    <message>
        <source>Select a discovered machine or enter its IP address.</source>
        <translation type="vanished">Wählen Sie eine gefundene Maschine oder geben Sie ihre IP-Adresse ein.</translation>
    </message>
    <message>
        <source>Model unknown</source>
        <translation type="vanished">Modell unbekannt</translation>
    </message>
    <message>
        <source>Available</source>
        <translation type="vanished">Verfügbar</translation>
    </message>
    <message>
        <source>Busy</source>
        <translation type="vanished">Belegt</translation>
    </message>
    <message>
        <source>Connected</source>
        <translation type="vanished">Verbunden</translation>
    </message>
    <message>
        <source>Connecting</source>
        <translation type="vanished">Wird verbunden</translation>
    </message>
    <message>
        <source>Unavailable</source>
        <translation type="vanished">Nicht erreichbar</translation>
    </message>
    <message>
        <source>Job file</source>
        <translation type="vanished">Auftragsdatei</translation>
    </message>
    <message>
        <source>Choose an .nc, .cnc or .gcode file…</source>
        <translation type="vanished">Eine .nc-, .cnc- oder .gcode-Datei wählen…</translation>
    </message>
    <message>
        <source>Choose Another…</source>
        <translation type="vanished">Andere wählen…</translation>
    </message>
    <message>
        <source>Choose</source>
        <translation type="vanished">Wählen</translation>
    </message>
    <message>
        <source>Sent uncompressed to /sd/gcodes on the machine</source>
        <translation type="vanished">Wird unkomprimiert nach /sd/gcodes auf der Maschine gesendet</translation>
    </message>
    <message>
        <source>Review Upload</source>
        <translation type="vanished">Hochladen prüfen</translation>
    </message>
    <message>
        <source>Recent files</source>
        <translation type="vanished">Zuletzt verwendet</translation>
    </message>
    <message>
        <source>Files you choose will appear here.</source>
        <translation type="vanished">Hier erscheinen die Dateien, die Sie wählen.</translation>
    </message>
    <message>
        <source>Transfer</source>
        <translation type="vanished">Übertragung</translation>
    </message>
    <message>
        <source>Preparing</source>
        <translation type="vanished">Wird vorbereitet</translation>
    </message>
    <message>
        <source>Uploading</source>
        <translation type="vanished">Wird hochgeladen</translation>
    </message>
    <message>
        <source>Upload complete</source>
        <translation type="vanished">Hochladen abgeschlossen</translation>
    </message>
    <message>
        <source>Upload cancelled</source>
        <translation type="vanished">Hochladen abgebrochen</translation>
    </message>
    <message>
        <source>Upload failed</source>
        <translation type="vanished">Hochladen fehlgeschlagen</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation type="vanished">%1 von %2</translation>
    </message>
    <message>
        <source>%1/s</source>
        <translation type="vanished">%1/s</translation>
    </message>
    <message>
        <source>About %1 h %2 min left</source>
        <translation type="vanished">Noch etwa %1 h %2 min</translation>
    </message>
    <message>
        <source>About %1 min left</source>
        <translation type="vanished">Noch etwa %1 min</translation>
    </message>
    <message>
        <source>About %1 s left</source>
        <translation type="vanished">Noch etwa %1 s</translation>
    </message>
    <message>
        <source>Choose a Makera job file</source>
        <translation type="vanished">Makera-Auftragsdatei wählen</translation>
    </message>
    <message>
        <source>Makera job files (%1)</source>
        <translation type="vanished">Makera-Auftragsdateien (%1)</translation>
    </message>
    <message>
        <source>Unknown error</source>
        <translation type="vanished">Unbekannter Fehler</translation>
    </message>
    <message>
        <source>OK</source>
        <translation type="vanished">OK</translation>
    </message>
    <message>
        <source>An upload is still running.</source>
        <translation type="vanished">Das Hochladen läuft noch.</translation>
    </message>
    <message>
        <source>Closing Tarnwick cancels the upload on the machine.</source>
        <translation type="vanished">Wenn Sie Tarnwick schließen, wird das Hochladen auf der Maschine abgebrochen.</translation>
    </message>
    <message>
        <source>Cancel Upload and Quit</source>
        <translation type="vanished">Hochladen abbrechen und beenden</translation>
    </message>
    <message>
        <source>Keep Uploading</source>
        <translation type="vanished">Weiter hochladen</translation>
    </message>
    <message>
        <source>Confirm upload</source>
        <translation type="vanished">Hochladen bestätigen</translation>
    </message>
    <message>
        <source>Address</source>
        <translation type="vanished">Adresse</translation>
    </message>
    <message>
        <source>Filename</source>
        <translation type="vanished">Dateiname</translation>
    </message>
    <message>
        <source>Size</source>
        <translation type="vanished">Größe</translation>
    </message>
    <message>
        <source>Remote path</source>
        <translation type="vanished">Pfad auf der Maschine</translation>
    </message>
    <message>
        <source>This sends the file only. It will not start a job.</source>
        <translation type="vanished">Es wird nur die Datei gesendet. Ein Auftrag wird nicht gestartet.</translation>
    </message>
    <message>
        <source>This exact file was uploaded to this machine in the last 24 hours.</source>
        <translation type="vanished">Genau diese Datei wurde in den letzten 24 Stunden auf diese Maschine hochgeladen.</translation>
    </message>
    <message>
        <source>Upload it again</source>
        <translation type="vanished">Erneut hochladen</translation>
    </message>
    <message>
        <source>Upload</source>
        <translation type="vanished">Hochladen</translation>
    </message>
    <message>
        <source>Update Available</source>
        <translation type="vanished">Update verfügbar</translation>
    </message>
    <message>
        <source>Up to Date</source>
        <translation type="vanished">Auf dem neuesten Stand</translation>
    </message>
    <message>
        <source>Update Check Failed</source>
        <translation type="vanished">Updateprüfung fehlgeschlagen</translation>
    </message>
    <message>
        <source>You are running the latest version of Tarnwick.</source>
        <translation type="vanished">Sie verwenden die neueste Version von Tarnwick.</translation>
    </message>
    <message>
        <source>Download</source>
        <translation type="vanished">Herunterladen</translation>
    </message>
    <message>
        <source>Later</source>
        <translation type="vanished">Später</translation>
    </message>
    <message>
        <source>Tarnwick %1 is available from %2.</source>
        <translation type="vanished">Tarnwick %1 ist unter %2 erhältlich.</translation>
    </message>
    <message>
        <source>Version %1 (%2)</source>
        <translation type="vanished">Version %1 (%2)</translation>
    </message>
    <message>
        <source>A ship in harbour is safe, but that is not what ships are built for.</source>
        <translation type="vanished">Ein Schiff im Hafen ist sicher, doch dafür werden Schiffe nicht gebaut.</translation>
    </message>
    <message>
        <source>Every expert was once a beginner.</source>
        <translation type="vanished">Jeder Meister hat einmal klein angefangen.</translation>
    </message>
    <message>
        <source>First make the thing, then make the thing better.</source>
        <translation type="vanished">Erst bauen, dann besser bauen.</translation>
    </message>
    <message>
        <source>If a job's worth doing, it's worth doing well.</source>
        <translation type="vanished">Was man macht, soll man richtig machen.</translation>
    </message>
    <message>
        <source>Make it work, make it right, make it fast.</source>
        <translation type="vanished">Erst zum Laufen bringen, dann richtig machen, dann schnell machen.</translation>
    </message>
    <message>
        <source>Measure twice, cut once.</source>
        <translation type="vanished">Zweimal messen, einmal schneiden.</translation>
    </message>
    <message>
        <source>Perfect is the enemy of done.</source>
        <translation type="vanished">Perfekt ist der Feind von fertig.</translation>
    </message>
    <message>
        <source>Spread a little happiness with a random act of kindness today.</source>
        <translation type="vanished">Bereiten Sie heute jemandem mit einer kleinen Freundlichkeit eine Freude.</translation>
    </message>
    <message>
        <source>Stand on the shoulders of giants.</source>
        <translation type="vanished">Auf den Schultern von Riesen stehen.</translation>
    </message>
    <message>
        <source>The best way to predict the future is to invent it.</source>
        <translation type="vanished">Die Zukunft sagt man am besten voraus, indem man sie erfindet.</translation>
    </message>
    <message>
        <source>The details are not the details. They make the design.</source>
        <translation type="vanished">Die Details sind nicht bloß Details. Sie machen das Design aus.</translation>
    </message>
    <message>
        <source>At launch, Tarnwick asks %1/quorle whether a newer version is available. The request carries a random install identifier used only to count installs — nothing about you or your files is sent.</source>
        <translation type="vanished">Beim Start fragt Tarnwick bei %1/quorle nach, ob eine neuere Version verfügbar ist. Die Anfrage enthält eine zufällige Installationskennung, die nur zum Zählen der Installationen dient – nichts über Sie oder Ihre Dateien wird gesendet.</translation>
    </message>
    <message>
        <source>Lists the machines that announce themselves on the local network</source>
        <translation type="vanished">Listet die Maschinen auf, die sich im lokalen Netzwerk melden</translation>
    </message>
    <message>
        <source>Checks that a machine accepts a connection</source>
        <translation type="vanished">Prüft, ob eine Maschine eine Verbindung annimmt</translation>
    </message>
    <message>
        <source>Sends a job file to a machine without starting it</source>
        <translation type="vanished">Sendet eine Auftragsdatei an eine Maschine, ohne sie zu starten</translation>
    </message>
    <message>
        <source>Asks the update feed whether a newer version exists</source>
        <translation type="vanished">Fragt beim Update-Dienst nach, ob es eine neuere Version gibt</translation>
    </message>
    <message>
        <source>Asks the update feed whether a newer version of Tarnwick exists.</source>
        <translation type="vanished">Fragt beim Update-Dienst nach, ob es eine neuere Version von Tarnwick gibt.</translation>
    </message>
    <message>
        <source>Shows this help.</source>
        <translation type="vanished">Zeigt diese Hilfe.</translation>
    </message>
    <message>
        <source>The job file to send.</source>
        <translation type="vanished">Die zu sendende Auftragsdatei.</translation>
    </message>
    <message>
        <source>Send the file even if it went to this machine in the last 24 hours.</source>
        <translation type="vanished">Die Datei auch senden, wenn sie in den letzten 24 Stunden an diese Maschine ging.</translation>
    </message>
    <message>
        <source>--port takes a port number from 1 to 65535.</source>
        <translation type="vanished">--port erwartet eine Portnummer von 1 bis 65535.</translation>
    </message>
    <message>
        <source>Listens for S seconds (default 3).</source>
        <translation type="vanished">Lauscht S Sekunden lang (Standard: 3).</translation>
    </message>
    <message>
        <source>Ask this feed instead of %1.</source>
        <translation type="vanished">Diesen Update-Dienst statt %1 fragen.</translation>
    </message>
    <message>
        <source>The machine's IPv4 address, with :PORT when its port is not %1.</source>
        <translation type="vanished">Die IPv4-Adresse der Maschine, mit :PORT, wenn ihr Port nicht %1 ist.</translation>
    </message>
    <message>
        <source>scan takes no arguments besides its options.</source>
        <translation type="vanished">scan nimmt außer seinen Optionen keine Argumente.</translation>
    </message>
    <message>
        <source>Exit codes: 0 success, 1 failure, 2 bad usage or input.</source>
        <translation type="vanished">Exit-Codes: 0 Erfolg, 1 Fehler, 2 falscher Aufruf oder ungültige Eingabe.</translation>
    </message>
    <message>
        <source>Ctrl-C cancels the upload and tells the machine.</source>
        <translation type="vanished">Strg+C bricht das Hochladen ab und teilt es der Maschine mit.</translation>
    </message>
    <message>
        <source>The job is not started.</source>
        <translation type="vanished">Der Auftrag wird nicht gestartet.</translation>
    </message>
    <message>
        <source>Run the command again with --again to send it anyway.</source>
        <translation type="vanished">Führen Sie den Befehl mit --again erneut aus, um die Datei trotzdem zu senden.</translation>
    </message>
    <message>
        <source>Update Available: %1</source>
        <translation type="vanished">Update verfügbar: %1</translation>
    </message>
    <message>
        <source>Update Check Failed: %1</source>
        <translation type="vanished">Updateprüfung fehlgeschlagen: %1</translation>
    </message>
    <message>
        <source>Uploaded %1 to %2</source>
        <translation type="vanished">%1 nach %2 hochgeladen</translation>
    </message>
</context>
</TS>
