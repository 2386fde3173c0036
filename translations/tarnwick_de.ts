<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>AppPersistence</name>
    <message>
        <source>The settings store %1 stayed locked by another program.</source>
        <translation>Der Einstellungsspeicher %1 blieb von einem anderen Programm gesperrt.</translation>
    </message>
    <message>
        <source>The lock file %1 could not be created: permission denied.</source>
        <translation>Die Sperrdatei %1 konnte nicht angelegt werden: Zugriff verweigert.</translation>
    </message>
    <message>
        <source>The lock file %1 could not be created.</source>
        <translation>Die Sperrdatei %1 konnte nicht angelegt werden.</translation>
    </message>
    <message>
        <source>The settings store %1 could not be read or written.</source>
        <translation>Der Einstellungsspeicher %1 konnte nicht gelesen oder geschrieben werden.</translation>
    </message>
    <message>
        <source>The settings store %1 is not in a format that can be read.</source>
        <translation>Der Einstellungsspeicher %1 hat ein Format, das nicht gelesen werden kann.</translation>
    </message>
    <message>
        <source>The settings store %1 is not a regular file, so it is left as it is.</source>
        <translation>Der Einstellungsspeicher %1 ist keine gewöhnliche Datei und bleibt daher unverändert.</translation>
    </message>
</context>
<context>
    <name>BatchUploadOutput</name>
    <message>
        <source>waiting</source>
        <translation>wartet</translation>
    </message>
    <message>
        <source>%1 → %2</source>
        <translation>%1 → %2</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message numerus="yes">
        <source>%1 of %n uploads succeeded.</source>
        <translation>
            <numerusform>%1 von %n Upload erfolgreich.</numerusform>
            <numerusform>%1 von %n Uploads erfolgreich.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>CheckCommand</name>
    <message>
        <source>Checks that a machine accepts a connection</source>
        <translation>Prüft, ob eine Maschine eine Verbindung annimmt</translation>
    </message>
    <message>
        <source>Checks that a machine accepts a TCP connection within %1 seconds. The connection is closed at once; nothing is sent.</source>
        <translation>Prüft, ob eine Maschine innerhalb von %1 Sekunden eine TCP-Verbindung annimmt. Die Verbindung wird sofort wieder geschlossen; es wird nichts gesendet.</translation>
    </message>
    <message>
        <source>The machine&apos;s IPv4 address, with :PORT when its port is not %1.</source>
        <translation>Die IPv4-Adresse der Maschine, mit :PORT, wenn ihr Port nicht %1 ist.</translation>
    </message>
    <message>
        <source>Usage: %1</source>
        <translation>Aufruf: %1</translation>
    </message>
    <message>
        <source>%1 accepted the connection.</source>
        <translation>%1 hat die Verbindung angenommen.</translation>
    </message>
    <message>
        <source>Connection check failed: %1</source>
        <translation>Die Verbindungsprüfung ist fehlgeschlagen: %1</translation>
    </message>
</context>
<context>
    <name>CheckUpdateCommand</name>
    <message>
        <source>Asks the update feed whether a newer version exists</source>
        <translation>Fragt beim Update-Dienst nach, ob es eine neuere Version gibt</translation>
    </message>
    <message>
        <source>Asks the update feed whether a newer version of Tarnwick exists.</source>
        <translation>Fragt beim Update-Dienst nach, ob es eine neuere Version von Tarnwick gibt.</translation>
    </message>
    <message>
        <source>Ask this feed instead of %1.</source>
        <translation>Diesen Update-Dienst statt %1 fragen.</translation>
    </message>
    <message>
        <source>tarnwick-cli check-update: unexpected argument &apos;%1&apos;</source>
        <translation>tarnwick-cli check-update: unerwartetes Argument „%1“</translation>
    </message>
    <message>
        <source>tarnwick-cli check-update: &apos;%1&apos; is not an http or https URL</source>
        <translation>tarnwick-cli check-update: „%1“ ist keine http- oder https-URL</translation>
    </message>
    <message>
        <source>Update Check Failed: %1</source>
        <translation>Updateprüfung fehlgeschlagen: %1</translation>
    </message>
    <message>
        <source>Update Available: %1 %2</source>
        <translation>Update verfügbar: %1 %2</translation>
    </message>
    <message>
        <source>Up to Date</source>
        <translation>Auf dem neuesten Stand</translation>
    </message>
</context>
<context>
    <name>Command</name>
    <message>
        <source>Shows this help.</source>
        <translation>Zeigt diese Hilfe.</translation>
    </message>
    <message>
        <source>Usage: %1</source>
        <translation>Aufruf: %1</translation>
    </message>
</context>
<context>
    <name>HistoryCommand</name>
    <message>
        <source>Prints the upload history</source>
        <translation>Gibt den Upload-Verlauf aus</translation>
    </message>
    <message>
        <source>Prints the stored upload records, newest first: the time, the machine, the size in bytes and the file&apos;s path, separated by tabs. Changes nothing.
Exit codes: 0 printed (also when there is nothing to print), 1 the history could not be read, 2 bad usage.</source>
        <translation>Gibt die gespeicherten Uploads aus, die neuesten zuerst: Zeit, Maschine, Größe in Bytes und Pfad der Datei, durch Tabulatoren getrennt. Ändert nichts.
Exit-Codes: 0 ausgegeben (auch wenn es nichts auszugeben gibt), 1 der Verlauf konnte nicht gelesen werden, 2 falscher Aufruf.</translation>
    </message>
    <message>
        <source>Print one JSON object per record, with the keys uploadedAt (ISO 8601), machine, file and size.</source>
        <translation>Ein JSON-Objekt je Eintrag ausgeben, mit den Schlüsseln uploadedAt (ISO 8601), machine, file und size.</translation>
    </message>
    <message>
        <source>Print comma-separated values with the header uploadedAt,machine,file,size.</source>
        <translation>Kommagetrennte Werte mit der Kopfzeile uploadedAt,machine,file,size ausgeben.</translation>
    </message>
    <message>
        <source>Only uploads to this machine: ADDRESS:PORT, or ADDRESS for every port.</source>
        <translation>Nur Uploads an diese Maschine: ADRESSE:PORT, oder ADRESSE für jeden Port.</translation>
    </message>
    <message>
        <source>Only uploads in the last DURATION: a whole number followed by s, m, h, d or w, such as 90m or 7d.</source>
        <translation>Nur Uploads in der letzten DAUER: eine ganze Zahl, gefolgt von s, m, h, d oder w, etwa 90m oder 7d.</translation>
    </message>
    <message>
        <source>Usage: %1</source>
        <translation>Aufruf: %1</translation>
    </message>
    <message>
        <source>Choose either --json or --csv.</source>
        <translation>Wählen Sie entweder --json oder --csv.</translation>
    </message>
    <message>
        <source>--since takes a duration such as 90s, 45m, 12h, 7d or 2w.</source>
        <translation>--since erwartet eine Dauer wie 90s, 45m, 12h, 7d oder 2w.</translation>
    </message>
    <message>
        <source>The upload history in %1 could not be read.</source>
        <translation>Der Upload-Verlauf in %1 konnte nicht gelesen werden.</translation>
    </message>
</context>
<context>
    <name>InspectCommand</name>
    <message>
        <source>none</source>
        <translation>keine</translation>
    </message>
    <message>
        <source>%1 × %2 × %3 mm (X %4 to %5, Y %6 to %7, Z %8 to %9)</source>
        <translation>%1 × %2 × %3 mm (X %4 bis %5, Y %6 bis %7, Z %8 bis %9)</translation>
    </message>
    <message>
        <source>not set</source>
        <translation>nicht festgelegt</translation>
    </message>
    <message>
        <source>mm</source>
        <translation>mm</translation>
    </message>
    <message>
        <source>inch</source>
        <translation>Zoll</translation>
    </message>
    <message>
        <source>mixed</source>
        <translation>gemischt</translation>
    </message>
    <message>
        <source>Lines: %1, moves: %2, units: %3</source>
        <translation>Zeilen: %1, Bewegungen: %2, Einheiten: %3</translation>
    </message>
    <message>
        <source>Cutting: %1</source>
        <translation>Schnitte: %1</translation>
    </message>
    <message>
        <source>Rapid: %1</source>
        <translation>Eilgänge: %1</translation>
    </message>
    <message>
        <source>Tools: %1</source>
        <translation>Werkzeuge: %1</translation>
    </message>
    <message>
        <source>Time: about %1 min</source>
        <translation>Zeit: etwa %1 min</translation>
    </message>
    <message>
        <source>Warning: %1</source>
        <translation>Warnung: %1</translation>
    </message>
    <message>
        <source>Shows what a job file will do: moves, extents, tools, time</source>
        <translation>Zeigt, was eine Auftragsdatei tun wird: Bewegungen, Ausmaße, Werkzeuge, Zeit</translation>
    </message>
    <message>
        <source>Prints one JSON object instead of text.</source>
        <translation>Gibt statt Text ein JSON-Objekt aus.</translation>
    </message>
    <message>
        <source>The job file.</source>
        <translation>Die Auftragsdatei.</translation>
    </message>
    <message>
        <source>Usage: %1</source>
        <translation>Aufruf: %1</translation>
    </message>
    <message>
        <source>Spindle: %1</source>
        <translation>Spindel: %1</translation>
    </message>
    <message>
        <source>%1 to %2 rpm</source>
        <translation>%1 bis %2 U/min</translation>
    </message>
    <message>
        <source>Feed: %1</source>
        <translation>Vorschub: %1</translation>
    </message>
    <message>
        <source>%1 to %2 mm/min</source>
        <translation>%1 bis %2 mm/min</translation>
    </message>
    <message>
        <source>Fits: the job fits the machine&apos;s limits.</source>
        <translation>Passt: der Auftrag passt in die Grenzen der Maschine.</translation>
    </message>
    <message>
        <source>Does not fit: %1</source>
        <translation>Passt nicht: %1</translation>
    </message>
    <message>
        <source>Reads a job file and prints what it will do: its moves, units, extents (in mm), tools, spindle speeds, feeds, an estimated time and warnings. Nothing is sent.

With --limits or --machine it also says whether the job fits the machine: whether the cuts span more than it travels on an axis, use a tool above its tool changer&apos;s positions, or a spindle speed or feed above its highest.

Exit codes:
  0  the file was read (warnings do not change this)
  2  bad usage or an unusable file</source>
        <translation>Liest eine Auftragsdatei und gibt aus, was sie tun wird: Bewegungen, Einheiten, Ausmaße (in mm), Werkzeuge, Spindeldrehzahlen, Vorschübe, eine geschätzte Zeit und Warnungen. Es wird nichts gesendet.

Mit --limits oder --machine sagt es auch, ob der Auftrag auf die Maschine passt: ob sich die Schnitte auf einer Achse weiter erstrecken, als sie verfährt, ob ein Werkzeug über den Plätzen ihres Werkzeugwechslers liegt oder eine Spindeldrehzahl oder ein Vorschub über ihrem Höchstwert.

Exit-Codes:
  0  die Datei wurde gelesen (Warnungen ändern daran nichts)
  2  falscher Aufruf oder unbrauchbare Datei</translation>
    </message>
    <message>
        <source>Checks the job against these limits: the travel in X, Y and Z in mm, then optionally the highest spindle speed in rpm, the number of tool positions and the highest feed in mm/min, separated by commas (an optional one may be left empty).</source>
        <translation>Prüft den Auftrag gegen diese Grenzen: den Verfahrweg in X, Y und Z in mm, dann wahlweise die höchste Spindeldrehzahl in U/min, die Zahl der Werkzeugplätze und den höchsten Vorschub in mm/min, durch Kommas getrennt (ein wahlweiser Wert darf leer bleiben).</translation>
    </message>
    <message>
        <source>Checks the job against the limits entered in the app for the machine at this address (the port is 2222 when left out). Names are not looked up.</source>
        <translation>Prüft den Auftrag gegen die Grenzen, die in der App für die Maschine an dieser Adresse eingegeben wurden (ohne Angabe ist der Port 2222). Namen werden nicht aufgelöst.</translation>
    </message>
    <message>
        <source>Give either --limits or --machine, not both.</source>
        <translation>Geben Sie entweder --limits oder --machine an, nicht beides.</translation>
    </message>
    <message>
        <source>No limits are stored for %1. Enter them in the app under “Machine limits…”, or give --limits.</source>
        <translation>Für %1 sind keine Grenzen gespeichert. Geben Sie sie in der App unter „Maschinengrenzen…“ ein oder geben Sie --limits an.</translation>
    </message>
</context>
<context>
    <name>LimitsOption</name>
    <message>
        <source>--limits takes 3 to 6 values separated by commas: X,Y,Z[,RPM[,TOOLS[,FEED]]].</source>
        <translation>--limits erwartet 3 bis 6 durch Kommas getrennte Werte: X,Y,Z[,RPM[,TOOLS[,FEED]]].</translation>
    </message>
    <message>
        <source>--limits: the travel in %1 must be a number of millimetres greater than 0, not “%2”.</source>
        <translation>--limits: der Verfahrweg in %1 muss eine Zahl von Millimetern größer als 0 sein, nicht „%2“.</translation>
    </message>
    <message>
        <source>--limits: the highest spindle speed must be a number of rpm greater than 0, not “%1”.</source>
        <translation>--limits: die höchste Spindeldrehzahl muss eine Zahl in U/min größer als 0 sein, nicht „%1“.</translation>
    </message>
    <message>
        <source>--limits: the number of tool positions must be a whole number of at least 1, not “%1”.</source>
        <translation>--limits: die Zahl der Werkzeugplätze muss eine ganze Zahl von mindestens 1 sein, nicht „%1“.</translation>
    </message>
    <message>
        <source>--limits: the highest feed must be a number of mm/min greater than 0, not “%1”.</source>
        <translation>--limits: der höchste Vorschub muss eine Zahl in mm/min größer als 0 sein, nicht „%1“.</translation>
    </message>
</context>
<context>
    <name>MachineTargets</name>
    <message>
        <source>No machine named “%1” answered the scan.</source>
        <translation>Auf die Suche hat keine Maschine namens „%1“ geantwortet.</translation>
    </message>
    <message>
        <source>More than one machine is named “%1”: %2. Give its address instead.</source>
        <translation>Mehr als eine Maschine heißt „%1“: %2. Geben Sie stattdessen ihre Adresse an.</translation>
    </message>
    <message>
        <source>A machine: its IPv4 address, with the controller&apos;s port (%1 when left out), or the name it announces on the local network, in any letter case (the tool listens for three seconds, and a name that two machines share is refused). Repeat for several machines.</source>
        <translation>Eine Maschine: ihre IPv4-Adresse mit dem Port der Steuerung (%1, wenn weggelassen) oder der Name, unter dem sie sich im lokalen Netzwerk meldet, in beliebiger Groß- und Kleinschreibung (das Werkzeug hört drei Sekunden lang zu, und ein Name, den zwei Maschinen tragen, wird abgelehnt). Für mehrere Maschinen wiederholen.</translation>
    </message>
</context>
<context>
    <name>ProgressBar</name>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message>
        <source>connecting</source>
        <translation>verbinde</translation>
    </message>
    <message>
        <source>done</source>
        <translation>fertig</translation>
    </message>
    <message>
        <source>cancelled</source>
        <translation>abgebrochen</translation>
    </message>
    <message>
        <source>Checking the file… %1</source>
        <translation>Datei wird geprüft… %1</translation>
    </message>
</context>
<context>
    <name>QAbstractSocket</name>
    <message>
        <source>Socket is not connected</source>
        <translation>Socket ist nicht verbunden</translation>
    </message>
</context>
<context>
    <name>ScanCommand</name>
    <message>
        <source>Lists the machines that announce themselves on the local network</source>
        <translation>Listet die Maschinen auf, die sich im lokalen Netzwerk melden</translation>
    </message>
    <message>
        <source>Listens for machines that announce themselves on the local network and prints each once, as soon as it is heard: NAME, ADDRESS:PORT and STATUS separated by tabs. Sends nothing.</source>
        <translation>Lauscht auf Maschinen, die sich im lokalen Netzwerk melden, und gibt jede einmal aus, sobald sie zu hören ist: NAME, ADRESSE:PORT und STATUS, durch Tabulatoren getrennt. Sendet nichts.</translation>
    </message>
    <message>
        <source>Listens for S seconds (default 3).</source>
        <translation>Lauscht S Sekunden lang (Standard: 3).</translation>
    </message>
    <message>
        <source>Prints each machine as one JSON object per line, with the keys name, ipAddress, port and status.</source>
        <translation>Gibt jede Maschine als ein JSON-Objekt pro Zeile aus, mit den Schlüsseln name, ipAddress, port und status.</translation>
    </message>
    <message>
        <source>Listens on UDP port N instead of %1 (for testing with a simulated machine that announces itself on another port).</source>
        <translation>Lauscht auf UDP-Port N statt %1 (zum Testen mit einer simulierten Maschine, die sich auf einem anderen Port meldet).</translation>
    </message>
    <message>
        <source>scan takes no arguments besides its options.</source>
        <translation>scan erwartet außer seinen Optionen keine Argumente.</translation>
    </message>
    <message>
        <source>--seconds takes a number of seconds greater than 0 and at most %1.</source>
        <translation>--seconds erwartet eine Anzahl Sekunden größer als 0 und höchstens %1.</translation>
    </message>
    <message>
        <source>--port takes a port number from 1 to 65535.</source>
        <translation>--port erwartet eine Portnummer von 1 bis 65535.</translation>
    </message>
</context>
<context>
    <name>SentDigests</name>
    <message>
        <source>The settings store %1 cannot be written.</source>
        <translation>Der Einstellungsspeicher %1 kann nicht geschrieben werden.</translation>
    </message>
    <message>
        <source>The settings store %1 is locked by another program.</source>
        <translation>Der Einstellungsspeicher %1 ist von einem anderen Programm gesperrt.</translation>
    </message>
    <message>
        <source>The settings store %1 could not be saved.</source>
        <translation>Der Einstellungsspeicher %1 konnte nicht gesichert werden.</translation>
    </message>
</context>
<context>
    <name>UploadCommand</name>
    <message>
        <source>Sends job files to machines without starting them</source>
        <translation>Sendet Auftragsdateien an Maschinen, ohne sie zu starten</translation>
    </message>
    <message>
        <source>Send a file even if it went to the machine in the last 24 hours.</source>
        <translation>Eine Datei auch senden, wenn sie in den letzten 24 Stunden an die Maschine ging.</translation>
    </message>
    <message>
        <source>Send to a machine found by name even if it announces itself busy.</source>
        <translation>An eine über ihren Namen gefundene Maschine auch senden, wenn sie sich als belegt meldet.</translation>
    </message>
    <message>
        <source>Print one JSON object per line: per progress value {&quot;phase&quot;, &quot;bytesSent&quot;, &quot;totalBytes&quot;, &quot;bytesPerSecond&quot;} (while the file is checked {&quot;phase&quot;: &quot;checking&quot;, &quot;bytesChecked&quot;, &quot;totalBytes&quot;}), on failure {&quot;error&quot;, &quot;kind&quot;} with kind one of failed, usage, unreachable, refused, timeout, cancelled, duplicate, file, and {&quot;warning&quot;} when the history could not be saved. With several uploads every line also has &quot;file&quot; and &quot;machine&quot;, each upload ends with a line holding its &quot;exitCode&quot;, and a last line sums up.</source>
        <translation>Ein JSON-Objekt pro Zeile ausgeben: je Fortschrittswert {&quot;phase&quot;, &quot;bytesSent&quot;, &quot;totalBytes&quot;, &quot;bytesPerSecond&quot;} (während die Datei geprüft wird {&quot;phase&quot;: &quot;checking&quot;, &quot;bytesChecked&quot;, &quot;totalBytes&quot;}), bei einem Fehler {&quot;error&quot;, &quot;kind&quot;} mit kind aus failed, usage, unreachable, refused, timeout, cancelled, duplicate, file, und {&quot;warning&quot;}, wenn der Verlauf nicht gespeichert werden konnte. Bei mehreren Uploads hat jede Zeile auch &quot;file&quot; und &quot;machine&quot;, jeder Upload endet mit einer Zeile mit seinem &quot;exitCode&quot;, und eine letzte Zeile fasst zusammen.</translation>
    </message>
    <message>
        <source>Usage: %1</source>
        <translation>Aufruf: %1</translation>
    </message>
    <message>
        <source>--discovery-port takes a port number from 1 to 65535.</source>
        <translation>--discovery-port erwartet eine Portnummer von 1 bis 65535.</translation>
    </message>
    <message>
        <source>“%1” at %2 is busy, so nothing was sent to it. Add --busy-ok to send to it anyway.</source>
        <translation>„%1“ unter %2 ist belegt, daher wurde nichts dorthin gesendet. Fügen Sie --busy-ok hinzu, um trotzdem zu senden.</translation>
    </message>
    <message>
        <source>The job files to send.</source>
        <translation>Die zu sendenden Auftragsdateien.</translation>
    </message>
    <message>
        <source>%1 is empty, so there is nothing to send.</source>
        <translation>%1 ist leer, es gibt also nichts zu senden.</translation>
    </message>
    <message>
        <source>Sends job files (.nc, .cnc or .gcode) into each machine&apos;s folder %1. The jobs are not started. Every file goes to every machine: one file at a time per machine, in the order given, and the machines in parallel.
Ctrl-C, SIGTERM or SIGHUP cancels the uploads and tells the machines.

Exit codes (with several uploads, the first failure in the order of the files, then of the machines):
  0  uploaded; each upload is added to the upload history
  1  any other failure
  2  bad usage, an unusable file or an invalid address; nothing was sent
  3  machine unreachable (refused, connection time-out, network error before the transfer, which begins when the machine takes the upload command), or no machine of that name answered
  4  refused by the machine, or by its rules (a name it cannot take)
  5  timed out waiting for the machine
  6  cancelled by the user or a signal
  7  sent to this machine in the last 24 hours (see --again)
  8  the job file changed or became unreadable during the upload</source>
        <translation>Sendet Auftragsdateien (.nc, .cnc oder .gcode) in den Ordner %1 jeder Maschine. Die Aufträge werden nicht gestartet. Jede Datei geht an jede Maschine: je Maschine eine Datei nach der anderen, in der angegebenen Reihenfolge, und die Maschinen parallel.
Strg+C, SIGTERM oder SIGHUP bricht das Hochladen ab und teilt es den Maschinen mit.

Exit-Codes (bei mehreren Uploads der erste Fehler in der Reihenfolge der Dateien, dann der Maschinen):
  0  hochgeladen; jeder Upload wird in den Upload-Verlauf aufgenommen
  1  jeder andere Fehler
  2  falscher Aufruf, eine unbrauchbare Datei oder eine ungültige Adresse; es wurde nichts gesendet
  3  Maschine nicht erreichbar (abgewiesen, Zeitüberschreitung beim Verbinden, Netzwerkfehler vor der Übertragung, die beginnt, sobald die Maschine den Upload-Befehl annimmt), oder keine Maschine dieses Namens hat geantwortet
  4  von der Maschine oder ihren Regeln abgelehnt (ein Name, den sie nicht annehmen kann)
  5  Zeitüberschreitung beim Warten auf die Maschine
  6  vom Benutzer oder durch ein Signal abgebrochen
  7  in den letzten 24 Stunden an diese Maschine gesendet (siehe --again)
  8  die Auftragsdatei hat sich während des Hochladens geändert oder wurde unlesbar</translation>
    </message>
</context>
<context>
    <name>UploadWorkflow</name>
    <message>
        <source>The upload history could not be saved: %1</source>
        <translation>Der Upload-Verlauf konnte nicht gespeichert werden: %1</translation>
    </message>
</context>
<context>
    <name>WatchCommand</name>
    <message>
        <source>Sends each new or changed job file of a folder to machines</source>
        <translation>Sendet jede neue oder geänderte Auftragsdatei eines Ordners an Maschinen</translation>
    </message>
    <message>
        <source>Watches a folder and sends each job file (.nc, .cnc or .gcode) that appears in it or changes into each machine&apos;s folder %1, replacing the machine&apos;s copy. The jobs are not started. A file is sent once its size and modification time have stayed the same for two seconds; hidden and temporary files (a leading dot, a trailing ~, .tmp, .part) are ignored. A file whose content a machine already got from a watch is not sent to it again. A machine that announces itself busy gets its files when it announces itself idle; one that cannot be reached is tried again, after pauses of up to a minute. The folder is only read. Every upload is added to the upload history.
Runs until Ctrl-C, SIGTERM or SIGHUP, which cancels the uploads under way and tells the machines.

Exit codes: 0 when stopped, 2 bad usage or no such folder, 3 when a name is not heard, 6 cancelled. With --once, the class of the first failure, as the upload command has them.</source>
        <translation>Beobachtet einen Ordner und sendet jede Auftragsdatei (.nc, .cnc oder .gcode), die darin erscheint oder sich ändert, in den Ordner %1 jeder Maschine und ersetzt dort die vorhandene Kopie. Die Aufträge werden nicht gestartet. Eine Datei wird gesendet, sobald ihre Größe und ihr Änderungsdatum zwei Sekunden lang gleich geblieben sind; versteckte und temporäre Dateien (ein Punkt am Anfang, eine Tilde am Ende, .tmp, .part) werden übergangen. Eine Datei, deren Inhalt eine Maschine schon aus einer Beobachtung erhalten hat, wird ihr nicht noch einmal gesendet. Eine Maschine, die sich als beschäftigt meldet, erhält ihre Dateien, wenn sie sich als bereit meldet; eine nicht erreichbare wird erneut versucht, nach Pausen von bis zu einer Minute. Der Ordner wird nur gelesen. Jeder Upload wird in den Upload-Verlauf aufgenommen.
Läuft bis Strg-C, SIGTERM oder SIGHUP; das bricht laufende Uploads ab und teilt es den Maschinen mit.

Exit-Codes: 0 nach dem Beenden, 2 falscher Aufruf oder kein solcher Ordner, 3 wenn ein Name nicht gehört wird, 6 abgebrochen. Mit --once die Klasse des ersten Fehlers, wie beim Befehl upload.</translation>
    </message>
    <message>
        <source>Print one JSON object per line and event: {&quot;event&quot;} with event one of watching, folderMissing, folderBack, seen, sent, unchanged, failed, busy, unreachable; &quot;file&quot; or &quot;folder&quot; and &quot;machine&quot; where they apply; a failure with {&quot;error&quot;, &quot;kind&quot;}, a wait for an unreachable machine with {&quot;retryInSeconds&quot;}.</source>
        <translation>Ein JSON-Objekt pro Zeile und Ereignis ausgeben: {&quot;event&quot;} mit event einem von watching, folderMissing, folderBack, seen, sent, unchanged, failed, busy, unreachable; &quot;file&quot; oder &quot;folder&quot; und &quot;machine&quot;, wo sie zutreffen; ein Fehler mit {&quot;error&quot;, &quot;kind&quot;}, das Warten auf eine nicht erreichbare Maschine mit {&quot;retryInSeconds&quot;}.</translation>
    </message>
    <message>
        <source>Send the complete job files that are in the folder now, then exit. A busy or unreachable machine is not waited for.</source>
        <translation>Die vollständigen Auftragsdateien senden, die jetzt im Ordner liegen, und dann beenden. Auf eine beschäftigte oder nicht erreichbare Maschine wird nicht gewartet.</translation>
    </message>
    <message>
        <source>The folder to watch.</source>
        <translation>Der zu beobachtende Ordner.</translation>
    </message>
    <message>
        <source>Usage: %1</source>
        <translation>Aufruf: %1</translation>
    </message>
    <message>
        <source>%1 is not a folder.</source>
        <translation>%1 ist kein Ordner.</translation>
    </message>
    <message>
        <source>--discovery-port takes a port number from 1 to 65535.</source>
        <translation>--discovery-port erwartet eine Portnummer von 1 bis 65535.</translation>
    </message>
</context>
<context>
    <name>WatchEvent</name>
    <message>
        <source>Watching %1 for job files. Ctrl-C stops.</source>
        <translation>%1 wird auf Auftragsdateien beobachtet. Strg-C beendet.</translation>
    </message>
    <message>
        <source>The folder %1 is gone; it is watched again when it comes back.</source>
        <translation>Der Ordner %1 ist verschwunden; er wird wieder beobachtet, sobald er zurück ist.</translation>
    </message>
    <message>
        <source>The folder %1 is back.</source>
        <translation>Der Ordner %1 ist wieder da.</translation>
    </message>
    <message>
        <source>%1 is complete.</source>
        <translation>%1 ist vollständig.</translation>
    </message>
    <message>
        <source>Sent %1 to %2:%3%1.</source>
        <translation>%1 an %2:%3%1 gesendet.</translation>
    </message>
    <message>
        <source>Sent %1 to %2:%3%1. %4</source>
        <translation>%1 an %2:%3%1 gesendet. %4</translation>
    </message>
    <message>
        <source>%1 → %2: skipped, the machine already has this content.</source>
        <translation>%1 → %2: übersprungen, die Maschine hat diesen Inhalt schon.</translation>
    </message>
    <message>
        <source>%1 → %2: %3</source>
        <translation>%1 → %2: %3</translation>
    </message>
    <message>
        <source>%1 is busy; its files wait until it announces itself idle.</source>
        <translation>%1 ist beschäftigt; ihre Dateien warten, bis sie sich als bereit meldet.</translation>
    </message>
    <message numerus="yes">
        <source>%1 cannot be reached; it is tried again in %n s.</source>
        <translation>
            <numerusform>%1 ist nicht erreichbar; neuer Versuch in %n s.</numerusform>
            <numerusform>%1 ist nicht erreichbar; neuer Versuch in %n s.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>cli</name>
    <message>
        <source>Manual machine</source>
        <translation>Manuelle Maschine</translation>
    </message>
    <message>
        <source>Enter a valid IPv4 address and port.</source>
        <translation>Geben Sie eine gültige IPv4-Adresse und einen Port ein.</translation>
    </message>
    <message>
        <source>Usage: tarnwick-cli COMMAND [OPTIONS]

Sends job files to Makera CNC machines on the local network. It never starts a job.

Commands:
</source>
        <translation>Aufruf: tarnwick-cli BEFEHL [OPTIONEN]

Sendet Auftragsdateien an Makera-CNC-Maschinen im lokalen Netzwerk. Startet nie einen Auftrag.

Befehle:
</translation>
    </message>
    <message>
        <source>
Run &apos;tarnwick-cli COMMAND --help&apos; for a command&apos;s options and exit codes.
Exit codes: 0 success, 1 failure, 2 bad usage or input; upload has more.
</source>
        <translation>
„tarnwick-cli BEFEHL --help“ zeigt die Optionen und Exit-Codes eines Befehls.
Exit-Codes: 0 Erfolg, 1 Fehler, 2 falscher Aufruf oder ungültige Eingabe; upload hat weitere.
</translation>
    </message>
    <message>
        <source>tarnwick-cli: unknown command &apos;%1&apos;</source>
        <translation>tarnwick-cli: unbekannter Befehl „%1“</translation>
    </message>
    <message>
        <source>Uploaded %1 to %2:%3%1.</source>
        <translation>%1 nach %2:%3%1 hochgeladen.</translation>
    </message>
</context>
<context>
    <name>tarnwick::AppModel</name>
    <message>
        <source>Connection check failed: %1</source>
        <translation>Die Verbindungsprüfung ist fehlgeschlagen: %1</translation>
    </message>
    <message>
        <source>Manual machine</source>
        <translation>Manuelle Maschine</translation>
    </message>
    <message>
        <source>The machine&apos;s limits could not be saved: %1</source>
        <translation>Die Grenzen der Maschine konnten nicht gespeichert werden: %1</translation>
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
    <name>tarnwick::Discovery</name>
    <message>
        <source>Discovery failed: %1</source>
        <translation>Die Suche nach Maschinen ist fehlgeschlagen: %1</translation>
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
    <message>
        <source>The file name “%1” contains a control character, which the machine cannot take. Rename the file.</source>
        <translation>Der Dateiname „%1“ enthält ein Steuerzeichen, das die Maschine nicht annehmen kann. Benennen Sie die Datei um.</translation>
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
    <name>tarnwick::TransferTexts</name>
    <message>
        <source>%1 byte</source>
        <extracomment>A byte count below one kilobyte; %1 is the number.</extracomment>
        <translation>%1 Byte</translation>
    </message>
    <message>
        <source>%1 bytes</source>
        <translation>%1 Byte</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <extracomment>A byte count in a decimal unit: %1 is the number, %2 the unit such as &quot;MB&quot;.</extracomment>
        <translation>%1 %2</translation>
    </message>
    <message>
        <source>%1/s</source>
        <extracomment>A transfer rate: %1 is a byte count such as &quot;48 kB&quot;.</extracomment>
        <translation>%1/s</translation>
    </message>
    <message>
        <source>About %1 s left</source>
        <translation>Noch etwa %1 s</translation>
    </message>
    <message>
        <source>About %1 min left</source>
        <translation>Noch etwa %1 min</translation>
    </message>
    <message>
        <source>About %1 h %2 min left</source>
        <translation>Noch etwa %1 h %2 min</translation>
    </message>
</context>
<context>
    <name>tarnwick::UpdateChecker</name>
    <message>
        <source>The update feed at %1 could not be read.</source>
        <translation>Die Versionsinformationen unter %1 konnten nicht gelesen werden.</translation>
    </message>
    <message>
        <source>The update server did not answer within %1 seconds.</source>
        <translation>Der Update-Server hat nicht innerhalb von %1 Sekunden geantwortet.</translation>
    </message>
    <message>
        <source>%1 the compressed answer is damaged or cut short.</source>
        <translation>%1 die komprimierte Antwort ist beschädigt oder unvollständig.</translation>
    </message>
</context>
<context>
    <name>tarnwick::UploadAdvice</name>
    <message>
        <source>Every part of the file had been sent when the upload ended. The machine may have received the whole file: check it on the machine before sending it again.</source>
        <translation>Alle Teile der Datei waren gesendet, als der Upload endete. Die Maschine hat die Datei möglicherweise vollständig erhalten: Prüfen Sie das an der Maschine, bevor Sie sie erneut senden.</translation>
    </message>
    <message>
        <source>The upload ended before the whole file was sent, so the machine does not have all of it. Check that the machine is switched on and ready, then send the file again.</source>
        <translation>Der Upload endete, bevor die ganze Datei gesendet war; die Maschine hat sie also nicht vollständig. Prüfen Sie, ob die Maschine eingeschaltet und bereit ist, und senden Sie die Datei dann erneut.</translation>
    </message>
    <message>
        <source>The machine could not be reached, or the connection to it ended before the file was sent. Check that the machine is switched on and on the same network as this computer, then try again.</source>
        <translation>Die Maschine war nicht erreichbar, oder die Verbindung zu ihr endete, bevor die Datei gesendet wurde. Prüfen Sie, ob die Maschine eingeschaltet und im selben Netzwerk wie dieser Computer ist, und versuchen Sie es dann erneut.</translation>
    </message>
    <message>
        <source>Send the file again once it is saved and no program is writing it.</source>
        <translation>Senden Sie die Datei erneut, sobald sie gespeichert ist und kein Programm mehr in sie schreibt.</translation>
    </message>
    <message>
        <source>Check that the file is still there and can be read, then try again.</source>
        <translation>Prüfen Sie, ob die Datei noch vorhanden und lesbar ist, und versuchen Sie es dann erneut.</translation>
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
<context>
    <name>tarnwick::UploadQueue</name>
    <message>
        <source>Waiting</source>
        <translation>Wartet</translation>
    </message>
    <message>
        <source>Checking the file</source>
        <translation>Datei wird geprüft</translation>
    </message>
    <message>
        <source>Sending</source>
        <translation>Wird gesendet</translation>
    </message>
    <message>
        <source>Sent</source>
        <translation>Gesendet</translation>
    </message>
    <message>
        <source>Sent, but the upload history could not be saved: %1</source>
        <translation>Gesendet, aber der Upload-Verlauf konnte nicht gespeichert werden: %1</translation>
    </message>
    <message>
        <source>Cancelled</source>
        <translation>Abgebrochen</translation>
    </message>
    <message>
        <source>Not sent: this file went to this machine in the last 24 hours</source>
        <translation>Nicht gesendet: Diese Datei ging in den letzten 24 Stunden an diese Maschine</translation>
    </message>
    <message numerus="yes">
        <source>%1 of %n sent</source>
        <translation>
            <numerusform>%1 von %n gesendet</numerusform>
            <numerusform>%1 von %n gesendet</numerusform>
        </translation>
    </message>
    <message>
        <source>%1, %2: %3</source>
        <translation>%1, %2: %3</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message numerus="yes">
        <source>%n failed: %1</source>
        <translation>
            <numerusform>%n fehlgeschlagen: %1</numerusform>
            <numerusform>%n fehlgeschlagen: %1</numerusform>
        </translation>
    </message>
    <message>
        <source>; </source>
        <translation>; </translation>
    </message>
    <message numerus="yes">
        <source>%n cancelled</source>
        <translation>
            <numerusform>%n abgebrochen</numerusform>
            <numerusform>%n abgebrochen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n not sent as recent duplicates</source>
        <translation>
            <numerusform>%n als kürzliches Duplikat nicht gesendet</numerusform>
            <numerusform>%n als kürzliche Duplikate nicht gesendet</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n not recorded in the upload history</source>
        <translation>
            <numerusform>%n nicht im Upload-Verlauf vermerkt</numerusform>
            <numerusform>%n nicht im Upload-Verlauf vermerkt</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>tarnwick::cli::FolderDelivery</name>
    <message>
        <source>Announcements cannot be heard, so a busy machine is not noticed: %1</source>
        <translation>Meldungen der Maschinen sind nicht zu hören, daher wird eine beschäftigte Maschine nicht bemerkt: %1</translation>
    </message>
</context>
<context>
    <name>tarnwick::cli::MachineFeed</name>
    <message>
        <source>%1 is busy, so nothing was sent to it.</source>
        <translation>%1 ist beschäftigt, daher wurde nichts an sie gesendet.</translation>
    </message>
    <message>
        <source>%1 could not be read.</source>
        <translation>%1 konnte nicht gelesen werden.</translation>
    </message>
    <message>
        <source>It may be sent again, because what was sent could not be remembered: %1</source>
        <translation>Die Datei wird vielleicht noch einmal gesendet, denn was gesendet wurde, konnte nicht vermerkt werden: %1</translation>
    </message>
</context>
<context>
    <name>tarnwick::cli::PairUpload</name>
    <message>
        <source>This exact file was uploaded to this machine in the last 24 hours. Run the command again with --again to send it anyway.</source>
        <translation>Genau diese Datei wurde in den letzten 24 Stunden auf diese Maschine hochgeladen. Führen Sie den Befehl mit --again erneut aus, um sie trotzdem zu senden.</translation>
    </message>
</context>
<context>
    <name>tarnwick::gcode::MachineFit</name>
    <message>
        <source>The cuts span %1 mm in %2; this machine travels %3 mm.</source>
        <extracomment>The axis is a letter: X, Y or Z.</extracomment>
        <translation>Die Schnitte erstrecken sich in %2 über %1 mm; diese Maschine verfährt %3 mm.</translation>
    </message>
    <message>
        <source>The job uses tool T%1; this machine&apos;s tool changer goes up to T%2.</source>
        <translation>Der Auftrag verwendet das Werkzeug T%1; der Werkzeugwechsler dieser Maschine reicht bis T%2.</translation>
    </message>
    <message>
        <source>The job turns the spindle at %1 rpm; this machine reaches %2 rpm.</source>
        <translation>Der Auftrag dreht die Spindel mit %1 U/min; diese Maschine erreicht %2 U/min.</translation>
    </message>
    <message>
        <source>The job feeds at %1 mm/min; this machine feeds at most %2 mm/min.</source>
        <translation>Der Auftrag fährt mit einem Vorschub von %1 mm/min; diese Maschine schafft höchstens %2 mm/min.</translation>
    </message>
</context>
<context>
    <name>tarnwick::gcode::Warning</name>
    <message>
        <source>The file sets no units (G20 or G21); millimetres are assumed.</source>
        <translation>Die Datei legt keine Einheiten fest (G20 oder G21); es werden Millimeter angenommen.</translation>
    </message>
    <message>
        <source>Line %1 switches between inches and millimetres.</source>
        <translation>Zeile %1 wechselt zwischen Zoll und Millimetern.</translation>
    </message>
    <message>
        <source>Line %1 feeds before any feed rate (F) is set.</source>
        <translation>Zeile %1 fährt im Vorschub, bevor ein Vorschub (F) festgelegt ist.</translation>
    </message>
    <message>
        <source>Line %1 cuts while the spindle is stopped (no M3 or M4 before it).</source>
        <translation>Zeile %1 schneidet bei stehender Spindel (kein M3 oder M4 davor).</translation>
    </message>
    <message>
        <source>Line %1: %2 is not supported, so the analysis is partial.</source>
        <translation>Zeile %1: %2 wird nicht unterstützt, daher ist die Analyse unvollständig.</translation>
    </message>
    <message>
        <source>Line %1 is not understood near &quot;%2&quot;, so the analysis is partial.</source>
        <translation>Zeile %1 wird bei „%2“ nicht verstanden, daher ist die Analyse unvollständig.</translation>
    </message>
    <message>
        <source>Line %1 has an arc whose end point does not fit its radius or centre, so the analysis is partial.</source>
        <translation>Zeile %1 enthält einen Bogen, dessen Endpunkt nicht zu Radius oder Mittelpunkt passt, daher ist die Analyse unvollständig.</translation>
    </message>
    <message>
        <source>Line %1 moves in machine coordinates (%2); that move is not part of the extents.</source>
        <translation>Zeile %1 bewegt in Maschinenkoordinaten (%2); diese Bewegung zählt nicht zu den Ausmaßen.</translation>
    </message>
    <message>
        <source>Line %1 comes after the program&apos;s end (M2 or M30) and is not run.</source>
        <translation>Zeile %1 steht nach dem Programmende (M2 oder M30) und wird nicht ausgeführt.</translation>
    </message>
    <message>
        <source>Line %1 feeds at a feed rate of zero (F0).</source>
        <translation>Zeile %1 fährt mit einem Vorschub von null (F0).</translation>
    </message>
    <message>
        <source>Line %1 sets a negative feed rate (%2), which is left out of the feeds.</source>
        <translation>Zeile %1 legt einen negativen Vorschub fest (%2), der bei den Vorschüben nicht mitzählt.</translation>
    </message>
</context>
<context>
    <name>tarnwick::ui::AboutView</name>
    <message>
        <source>Stand on the shoulders of giants.</source>
        <translation>Auf den Schultern von Riesen stehen.</translation>
    </message>
    <message>
        <source>Measure twice, cut once.</source>
        <translation>Zweimal messen, einmal schneiden.</translation>
    </message>
    <message>
        <source>The best way to predict the future is to invent it.</source>
        <translation>Die Zukunft sagt man am besten voraus, indem man sie erfindet.</translation>
    </message>
    <message>
        <source>Make it work, make it right, make it fast.</source>
        <translation>Erst zum Laufen bringen, dann richtig machen, dann schnell machen.</translation>
    </message>
    <message>
        <source>The details are not the details. They make the design.</source>
        <translation>Die Details sind nicht bloß Details. Sie machen das Design aus.</translation>
    </message>
    <message>
        <source>A ship in harbour is safe, but that is not what ships are built for.</source>
        <translation>Ein Schiff im Hafen ist sicher, doch dafür werden Schiffe nicht gebaut.</translation>
    </message>
    <message>
        <source>If a job&apos;s worth doing, it&apos;s worth doing well.</source>
        <translation>Was man macht, soll man richtig machen.</translation>
    </message>
    <message>
        <source>Perfect is the enemy of done.</source>
        <translation>Perfekt ist der Feind von fertig.</translation>
    </message>
    <message>
        <source>Every expert was once a beginner.</source>
        <translation>Jeder Meister hat einmal klein angefangen.</translation>
    </message>
    <message>
        <source>First make the thing, then make the thing better.</source>
        <translation>Erst bauen, dann besser bauen.</translation>
    </message>
    <message>
        <source>Spread a little happiness with a random act of kindness today.</source>
        <translation>Bereiten Sie heute jemandem mit einer kleinen Freundlichkeit eine Freude.</translation>
    </message>
    <message>
        <source>Version %1 (%2)</source>
        <extracomment>%1 is the version, %2 the build number.</extracomment>
        <translation>Version %1 (%2)</translation>
    </message>
    <message>
        <source>About Tarnwick</source>
        <translation>Über Tarnwick</translation>
    </message>
    <message>
        <source>Tarnwick</source>
        <translation>Tarnwick</translation>
    </message>
    <message>
        <source>“%1”</source>
        <extracomment>The About window&apos;s quote between quotation marks.</extracomment>
        <translation>„%1“</translation>
    </message>
</context>
<context>
    <name>tarnwick::ui::ChosenFilesView</name>
    <message>
        <source>%1 · %2</source>
        <extracomment>A chosen file: its name and its size.</extracomment>
        <translation>%1 · %2</translation>
    </message>
    <message>
        <source>Chosen files</source>
        <translation>Gewählte Dateien</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Remove %1 from the upload</source>
        <translation>%1 aus dem Hochladen entfernen</translation>
    </message>
</context>
<context>
    <name>tarnwick::ui::ContentView</name>
    <message>
        <source>Makera job files (%1)</source>
        <extracomment>The file panel&apos;s filter; %1 is the list of patterns such as &quot;*.nc *.cnc&quot;.</extracomment>
        <translation>Makera-Auftragsdateien (%1)</translation>
    </message>
    <message>
        <source>Tarnwick</source>
        <translation>Tarnwick</translation>
    </message>
    <message>
        <source>Destination</source>
        <translation>Ziel</translation>
    </message>
    <message>
        <source>Job file</source>
        <translation>Auftragsdatei</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Vorschau</translation>
    </message>
    <message>
        <source>Transfer</source>
        <translation>Übertragung</translation>
    </message>
    <message>
        <source>Recent files</source>
        <translation>Zuletzt verwendet</translation>
    </message>
    <message>
        <source>Send job files to a Makera CNC without starting them.</source>
        <translation>Sendet Auftragsdateien an eine Makera-CNC, ohne sie zu starten.</translation>
    </message>
    <message>
        <source>Upload only</source>
        <translation>Nur hochladen</translation>
    </message>
    <message>
        <source>Tarnwick never opens, selects or starts a job and contains no motion-control commands.</source>
        <translation>Tarnwick öffnet, wählt oder startet nie einen Auftrag und enthält keine Bewegungsbefehle.</translation>
    </message>
    <message>
        <source>Dismiss</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Choose a Makera job file</source>
        <translation>Makera-Auftragsdatei wählen</translation>
    </message>
    <message>
        <source>Choose</source>
        <translation>Wählen</translation>
    </message>
    <message>
        <source>Unknown error</source>
        <translation>Unbekannter Fehler</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>An upload is still running.</source>
        <translation>Das Hochladen läuft noch.</translation>
    </message>
    <message>
        <source>Closing Tarnwick cancels the upload on the machine.</source>
        <translation>Wenn Sie Tarnwick schließen, wird das Hochladen auf der Maschine abgebrochen.</translation>
    </message>
    <message>
        <source>Cancel Upload and Quit</source>
        <translation>Hochladen abbrechen und beenden</translation>
    </message>
    <message>
        <source>Keep Uploading</source>
        <translation>Weiter hochladen</translation>
    </message>
    <message>
        <source>Uploads</source>
        <translation>Uploads</translation>
    </message>
</context>
<context>
    <name>tarnwick::ui::DestinationCard</name>
    <message>
        <source>Check Again</source>
        <translation>Erneut prüfen</translation>
    </message>
    <message>
        <source>Check whether the machine answers</source>
        <translation>Prüfen, ob die Maschine antwortet</translation>
    </message>
    <message>
        <source>Choose a destination</source>
        <translation>Ziel wählen</translation>
    </message>
    <message>
        <source>Select a discovered machine or enter its IP address.</source>
        <translation>Wählen Sie eine gefundene Maschine oder geben Sie ihre IP-Adresse ein.</translation>
    </message>
    <message>
        <source>Machine limits…</source>
        <translation>Maschinengrenzen…</translation>
    </message>
    <message>
        <source>Enter what this machine can do, so that each job is checked</source>
        <translation>Geben Sie ein, was diese Maschine kann, damit jeder Auftrag geprüft wird</translation>
    </message>
</context>
<context>
    <name>tarnwick::ui::ElidedLabel</name>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
</context>
<context>
    <name>tarnwick::ui::FileCard</name>
    <message>
        <source>Choose Another…</source>
        <translation>Andere Datei…</translation>
    </message>
    <message>
        <source>Sent uncompressed to %1 on the machine</source>
        <translation>Wird unkomprimiert nach %1 auf der Maschine gesendet</translation>
    </message>
    <message>
        <source>Review Upload</source>
        <translation>Hochladen prüfen</translation>
    </message>
    <message>
        <source>Choose an .nc, .cnc or .gcode file…</source>
        <translation>Eine .nc-, .cnc- oder .gcode-Datei wählen…</translation>
    </message>
    <message>
        <source>Follow a Folder…</source>
        <translation>Ordner folgen…</translation>
    </message>
    <message>
        <source>Follow a folder</source>
        <translation>Einem Ordner folgen</translation>
    </message>
</context>
<context>
    <name>tarnwick::ui::FollowedFolderLine</name>
    <message>
        <source>Stop Following</source>
        <translation>Nicht mehr folgen</translation>
    </message>
    <message>
        <source>Stop following the folder</source>
        <translation>Dem Ordner nicht mehr folgen</translation>
    </message>
    <message>
        <source>Choose a folder to follow</source>
        <translation>Ordner zum Folgen auswählen</translation>
    </message>
    <message>
        <source>Follow</source>
        <translation>Folgen</translation>
    </message>
    <message>
        <source>Following %1, which is not there now. It is followed again when it comes back.</source>
        <translation>Folgt %1, der gerade nicht da ist. Ihm wird wieder gefolgt, sobald er zurück ist.</translation>
    </message>
    <message>
        <source>Following %1. Last arrived: %2.</source>
        <translation>Folgt %1. Zuletzt angekommen: %2.</translation>
    </message>
    <message>
        <source>Following %1. New job files in it become the chosen file.</source>
        <translation>Folgt %1. Neue Auftragsdateien darin werden zur gewählten Datei.</translation>
    </message>
</context>
<context>
    <name>tarnwick::ui::Formatting</name>
    <message>
        <source>Preparing</source>
        <translation>Wird vorbereitet</translation>
    </message>
    <message>
        <source>Uploading</source>
        <translation>Wird hochgeladen</translation>
    </message>
    <message>
        <source>Upload complete</source>
        <translation>Hochladen abgeschlossen</translation>
    </message>
    <message>
        <source>Cancelled</source>
        <translation>Abgebrochen</translation>
    </message>
    <message>
        <source>Available</source>
        <translation>Verfügbar</translation>
    </message>
    <message>
        <source>Connecting</source>
        <translation>Wird verbunden</translation>
    </message>
    <message>
        <source>Connected</source>
        <translation>Verbunden</translation>
    </message>
    <message>
        <source>Busy</source>
        <translation>Belegt</translation>
    </message>
    <message>
        <source>Unavailable</source>
        <translation>Nicht erreichbar</translation>
    </message>
    <message>
        <source>%1 · %2</source>
        <extracomment>The destination&apos;s model, a middle dot, and its address and port.</extracomment>
        <translation>%1 · %2</translation>
    </message>
    <message>
        <source>Model unknown</source>
        <translation>Modell unbekannt</translation>
    </message>
    <message>
        <source>The machine reported that it is busy.</source>
        <translation>Die Maschine hat gemeldet, dass sie belegt ist.</translation>
    </message>
</context>
<context>
    <name>tarnwick::ui::JobFit</name>
    <message>
        <source>This job does not fit %1. %2</source>
        <extracomment>The name of the machine, then the first reason why the job does not fit it.</extracomment>
        <translation>Dieser Auftrag passt nicht auf %1. %2</translation>
    </message>
</context>
<context>
    <name>tarnwick::ui::JobPreviewTexts</name>
    <message>
        <source>in</source>
        <translation>in</translation>
    </message>
    <message>
        <source>mm</source>
        <translation>mm</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Keine</translation>
    </message>
    <message>
        <source>%1 × %2 × %3 %4</source>
        <extracomment>Width × depth × height of a box, then the unit of length.</extracomment>
        <translation>%1 × %2 × %3 %4</translation>
    </message>
    <message>
        <source>%1 (%2 × %3 × %4 mm)</source>
        <extracomment>A box in inches, then the same in millimetres.</extracomment>
        <translation>%1 (%2 × %3 × %4 mm)</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <translation>%1 %2</translation>
    </message>
    <message>
        <source>%1 to %2 %3</source>
        <translation>%1 bis %2 %3</translation>
    </message>
    <message>
        <source>Millimetres</source>
        <translation>Millimeter</translation>
    </message>
    <message>
        <source>Inches</source>
        <translation>Zoll</translation>
    </message>
    <message>
        <source>Inches and millimetres</source>
        <translation>Zoll und Millimeter</translation>
    </message>
    <message>
        <source>Not set</source>
        <translation>Nicht festgelegt</translation>
    </message>
    <message>
        <source>%1, absolute and incremental</source>
        <translation>%1, absolut und inkrementell</translation>
    </message>
    <message>
        <source>%1, incremental</source>
        <translation>%1, inkrementell</translation>
    </message>
    <message>
        <source>%1, absolute</source>
        <translation>%1, absolut</translation>
    </message>
    <message>
        <source>T%1</source>
        <translation>T%1</translation>
    </message>
    <message>
        <source>Cuts</source>
        <translation>Schnitte</translation>
    </message>
    <message>
        <source>Rapid moves</source>
        <translation>Eilgänge</translation>
    </message>
    <message>
        <source>Units</source>
        <translation>Einheiten</translation>
    </message>
    <message>
        <source>Tools</source>
        <translation>Werkzeuge</translation>
    </message>
    <message>
        <source>, </source>
        <translation>, </translation>
    </message>
    <message>
        <source>Spindle</source>
        <translation>Spindel</translation>
    </message>
    <message>
        <source>rpm</source>
        <translation>U/min</translation>
    </message>
    <message>
        <source>Feed</source>
        <translation>Vorschub</translation>
    </message>
    <message>
        <source>%1/min</source>
        <translation>%1/min</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>about %1</source>
        <translation>etwa %1</translation>
    </message>
    <message>
        <source>Moves</source>
        <translation>Bewegungen</translation>
    </message>
    <message>
        <source>Lines</source>
        <translation>Zeilen</translation>
    </message>
    <message>
        <source>%1 s</source>
        <translation>%1 s</translation>
    </message>
    <message>
        <source>%1 min</source>
        <translation>%1 min</translation>
    </message>
    <message>
        <source>%1 h %2 min</source>
        <translation>%1 h %2 min</translation>
    </message>
    <message>
        <source>Part of the file was not understood, so this preview is partial.</source>
        <translation>Ein Teil der Datei wurde nicht verstanden, daher ist diese Vorschau unvollständig.</translation>
    </message>
    <message numerus="yes">
        <source>%1 and %n more</source>
        <translation>
            <numerusform>%1 und %n weiteres</numerusform>
            <numerusform>%1 und %n weitere</numerusform>
        </translation>
    </message>
    <message>
        <source>at least %1</source>
        <translation>mindestens %1</translation>
    </message>
    <message>
        <source>Not known: line %1 uses %2</source>
        <translation>Nicht bekannt: Zeile %1 verwendet %2</translation>
    </message>
    <message>
        <source>Not known: line %1 could not be read</source>
        <translation>Nicht bekannt: Zeile %1 konnte nicht gelesen werden</translation>
    </message>
    <message>
        <source>Not known: part of the file could not be read</source>
        <translation>Nicht bekannt: Ein Teil der Datei konnte nicht gelesen werden</translation>
    </message>
</context>
<context>
    <name>tarnwick::ui::JobPreviewView</name>
    <message>
        <source>Choose a job file to see what it will cut.</source>
        <translation>Wählen Sie eine Auftragsdatei, um zu sehen, was sie fräst.</translation>
    </message>
    <message>
        <source>Reading the file…</source>
        <translation>Datei wird gelesen…</translation>
    </message>
    <message>
        <source>The file could not be read: %1</source>
        <translation>Die Datei konnte nicht gelesen werden: %1</translation>
    </message>
    <message>
        <source>Warnings not shown: %1.</source>
        <translation>Nicht angezeigte Warnungen: %1.</translation>
    </message>
</context>
<context>
    <name>tarnwick::ui::MachineLimitsDialog</name>
    <message>
        <source>Not set</source>
        <translation>Nicht festgelegt</translation>
    </message>
    <message>
        <source>Limits of %1</source>
        <translation>Grenzen von %1</translation>
    </message>
    <message>
        <source>Each job is checked against these numbers before it is sent. A field left at “Not set” is not checked.</source>
        <translation>Jeder Auftrag wird vor dem Senden gegen diese Zahlen geprüft. Ein Feld, das auf „Nicht festgelegt“ bleibt, wird nicht geprüft.</translation>
    </message>
    <message>
        <source>mm</source>
        <translation>mm</translation>
    </message>
    <message>
        <source>Travel in &amp;X:</source>
        <translation>Verfahrweg in &amp;X:</translation>
    </message>
    <message>
        <source>Travel in &amp;Y:</source>
        <translation>Verfahrweg in &amp;Y:</translation>
    </message>
    <message>
        <source>Travel in &amp;Z:</source>
        <translation>Verfahrweg in &amp;Z:</translation>
    </message>
    <message>
        <source>Travel in X</source>
        <translation>Verfahrweg in X</translation>
    </message>
    <message>
        <source>Travel in Y</source>
        <translation>Verfahrweg in Y</translation>
    </message>
    <message>
        <source>Travel in Z</source>
        <translation>Verfahrweg in Z</translation>
    </message>
    <message>
        <source>Highest &amp;spindle speed:</source>
        <translation>Höchste &amp;Spindeldrehzahl:</translation>
    </message>
    <message>
        <source>Highest spindle speed</source>
        <translation>Höchste Spindeldrehzahl</translation>
    </message>
    <message>
        <source>rpm</source>
        <translation>U/min</translation>
    </message>
    <message>
        <source>&amp;Tool positions:</source>
        <translation>&amp;Werkzeugplätze:</translation>
    </message>
    <message>
        <source>Tool positions</source>
        <translation>Werkzeugplätze</translation>
    </message>
    <message>
        <source>Highest &amp;feed:</source>
        <translation>Höchster &amp;Vorschub:</translation>
    </message>
    <message>
        <source>Highest feed</source>
        <translation>Höchster Vorschub</translation>
    </message>
    <message>
        <source>mm/min</source>
        <translation>mm/min</translation>
    </message>
</context>
<context>
    <name>tarnwick::ui::MachineListModel</name>
    <message>
        <source>%1 at %2</source>
        <translation>%1 unter %2</translation>
    </message>
    <message>
        <source>%1, %2, %3</source>
        <extracomment>A machine in the sidebar as assistive technology reads it: name, address, status.</extracomment>
        <translation>%1, %2, %3</translation>
    </message>
</context>
<context>
    <name>tarnwick::ui::MachineRowDelegate</name>
    <message>
        <source>Busy</source>
        <translation>Belegt</translation>
    </message>
</context>
<context>
    <name>tarnwick::ui::MachineSidebar</name>
    <message>
        <source>Machines</source>
        <translation>Maschinen</translation>
    </message>
    <message numerus="yes">
        <source>Stopped listing more: the scan heard more than %n machines.</source>
        <translation>
            <numerusform>Liste beendet: Die Suche hat mehr als %n Maschine gefunden.</numerusform>
            <numerusform>Liste beendet: Die Suche hat mehr als %n Maschinen gefunden.</numerusform>
        </translation>
    </message>
    <message>
        <source>Local network</source>
        <translation>Lokales Netzwerk</translation>
    </message>
    <message>
        <source>Scan for Makera machines</source>
        <translation>Nach Makera-Maschinen suchen</translation>
    </message>
    <message>
        <source>Enter IP address</source>
        <translation>IP-Adresse eingeben</translation>
    </message>
    <message>
        <source>IP address</source>
        <translation>IP-Adresse</translation>
    </message>
    <message>
        <source>Port</source>
        <translation>Port</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>Enter a valid IPv4 address and port.</source>
        <translation>Geben Sie eine gültige IPv4-Adresse und einen Port ein.</translation>
    </message>
    <message>
        <source>No machine answered the scan.

This usually means that the system does not allow Tarnwick to use the local network, that a firewall blocks UDP port 3333, or that the machine is on another subnet or reached through a VPN.

Use “Enter IP address” below to add the machine by its address.</source>
        <translation>Auf die Suche hat keine Maschine geantwortet.

Meist erlaubt das System Tarnwick nicht, das lokale Netzwerk zu nutzen, eine Firewall sperrt UDP-Port 3333, oder die Maschine liegt in einem anderen Subnetz oder ist über ein VPN verbunden.

Mit „IP-Adresse eingeben“ unten fügen Sie die Maschine über ihre Adresse hinzu.</translation>
    </message>
</context>
<context>
    <name>tarnwick::ui::PlannedUploadsView</name>
    <message>
        <source>%1 → %2 (%3) · %4</source>
        <extracomment>A file going to a machine: the file, the machine, its address and the remote path.</extracomment>
        <translation>%1 → %2 (%3) · %4</translation>
    </message>
    <message>
        <source>sent in the last 24 hours</source>
        <translation>in den letzten 24 Stunden gesendet</translation>
    </message>
    <message>
        <source>machine busy</source>
        <translation>Maschine beschäftigt</translation>
    </message>
    <message>
        <source>machine unavailable</source>
        <translation>Maschine nicht erreichbar</translation>
    </message>
    <message>
        <source>%1 · %2</source>
        <comment>a pair and one of its marks</comment>
        <translation>%1 · %2</translation>
    </message>
    <message>
        <source>Files and machines</source>
        <translation>Dateien und Maschinen</translation>
    </message>
</context>
<context>
    <name>tarnwick::ui::QueueListModel</name>
    <message>
        <source>%1 → %2</source>
        <comment>a file going to a machine</comment>
        <translation>%1 → %2</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Send Anyway</source>
        <translation>Trotzdem senden</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>Wiederholen</translation>
    </message>
    <message>
        <source>Cancel the upload of %1 to %2</source>
        <translation>Hochladen von %1 auf %2 abbrechen</translation>
    </message>
    <message>
        <source>Send %1 to %2 anyway</source>
        <translation>%1 trotzdem an %2 senden</translation>
    </message>
    <message>
        <source>Retry the upload of %1 to %2</source>
        <translation>Hochladen von %1 auf %2 wiederholen</translation>
    </message>
</context>
<context>
    <name>tarnwick::ui::QueueView</name>
    <message>
        <source>Uploads</source>
        <translation>Uploads</translation>
    </message>
    <message>
        <source>Cancel All</source>
        <translation>Alle abbrechen</translation>
    </message>
</context>
<context>
    <name>tarnwick::ui::RecentFilesView</name>
    <message>
        <source>Files you choose will appear here.</source>
        <translation>Hier erscheinen die Dateien, die Sie wählen.</translation>
    </message>
    <message>
        <source>Recent files</source>
        <translation>Zuletzt verwendet</translation>
    </message>
</context>
<context>
    <name>tarnwick::ui::SettingsView</name>
    <message>
        <source>At launch, Tarnwick asks %1/quorle whether a newer version is available. The request carries a random install identifier used only to count installs — nothing about you or your files is sent.</source>
        <extracomment>%1 is the update host, such as &quot;tarnwick.app&quot;.</extracomment>
        <translation>Beim Start fragt Tarnwick bei %1/quorle nach, ob eine neuere Version verfügbar ist. Die Anfrage enthält eine zufällige Installationskennung, die nur zum Zählen der Installationen dient – nichts über Sie oder Ihre Dateien wird gesendet.</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Check for updates automatically</source>
        <translation>Automatisch nach Updates suchen</translation>
    </message>
</context>
<context>
    <name>tarnwick::ui::TarnwickApp</name>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>Choose Job File…</source>
        <translation>Auftragsdatei wählen…</translation>
    </message>
    <message>
        <source>Settings…</source>
        <translation>Einstellungen…</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>About Tarnwick</source>
        <translation>Über Tarnwick</translation>
    </message>
    <message>
        <source>Check for Updates…</source>
        <translation>Nach Updates suchen…</translation>
    </message>
    <message>
        <source>Follow a Folder…</source>
        <translation>Ordner folgen…</translation>
    </message>
</context>
<context>
    <name>tarnwick::ui::ToolpathView</name>
    <message>
        <source>Zoom with the wheel, +, − or a pinch; drag or use the arrows to move; double-click or press 0 to see the whole job.</source>
        <translation>Zoomen mit dem Mausrad, +, − oder einer Fingergeste; ziehen oder die Pfeiltasten zum Verschieben; Doppelklick oder 0 zeigt den ganzen Auftrag.</translation>
    </message>
    <message>
        <source>Toolpath from above</source>
        <translation>Werkzeugweg von oben</translation>
    </message>
    <message>
        <source>Toolpath from the front</source>
        <translation>Werkzeugweg von vorn</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <extracomment>A height and its unit, at the deep end of the depth legend.</extracomment>
        <translation>%1 %2</translation>
    </message>
    <message>
        <source>in</source>
        <translation>in</translation>
    </message>
    <message>
        <source>mm</source>
        <translation>mm</translation>
    </message>
</context>
<context>
    <name>tarnwick::ui::TransferCard</name>
    <message>
        <source>Transfer progress</source>
        <translation>Übertragungsfortschritt</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Cancel upload</source>
        <translation>Hochladen abbrechen</translation>
    </message>
    <message>
        <source>Sending “%1” to %2</source>
        <translation>„%1“ wird an %2 gesendet</translation>
    </message>
    <message>
        <source>Sent “%1” to %2</source>
        <translation>„%1“ an %2 gesendet</translation>
    </message>
    <message>
        <source>“%1” to %2</source>
        <translation>„%1“ an %2</translation>
    </message>
    <message>
        <source>Upload failed</source>
        <translation>Hochladen fehlgeschlagen</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message>
        <source>Checking the file… %1</source>
        <translation>Datei wird geprüft… %1</translation>
    </message>
</context>
<context>
    <name>tarnwick::ui::UpdateAlert</name>
    <message>
        <source>Download</source>
        <translation>Herunterladen</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Tarnwick %1 is available from %2/quorle.</source>
        <extracomment>%1 is the new version, %2 the update host such as &quot;tarnwick.app&quot;.</extracomment>
        <translation>Tarnwick %1 ist unter %2/quorle erhältlich.</translation>
    </message>
    <message>
        <source>Update Available</source>
        <translation>Update verfügbar</translation>
    </message>
    <message>
        <source>Later</source>
        <translation>Später</translation>
    </message>
    <message>
        <source>Update Check Failed</source>
        <translation>Updateprüfung fehlgeschlagen</translation>
    </message>
    <message>
        <source>Up to Date</source>
        <translation>Auf dem neuesten Stand</translation>
    </message>
    <message>
        <source>You are running the latest version of Tarnwick.</source>
        <translation>Sie verwenden die neueste Version von Tarnwick.</translation>
    </message>
    <message>
        <source>Updates</source>
        <translation>Updates</translation>
    </message>
</context>
<context>
    <name>tarnwick::ui::UploadConfirmationView</name>
    <message>
        <source>Confirm upload</source>
        <translation>Hochladen bestätigen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Upload</source>
        <translation>Hochladen</translation>
    </message>
    <message>
        <source>This sends the file only. It will not start a job.</source>
        <translation>Es wird nur die Datei gesendet. Ein Auftrag wird nicht gestartet.</translation>
    </message>
    <message>
        <source>Destination</source>
        <translation>Ziel</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>Adresse</translation>
    </message>
    <message>
        <source>Filename</source>
        <translation>Dateiname</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>Remote path</source>
        <translation>Pfad auf der Maschine</translation>
    </message>
    <message>
        <source>This exact file was uploaded to this machine in the last 24 hours.</source>
        <translation>Genau diese Datei wurde in den letzten 24 Stunden auf diese Maschine hochgeladen.</translation>
    </message>
    <message>
        <source>Upload it again</source>
        <translation>Erneut hochladen</translation>
    </message>
</context>
</TS>
