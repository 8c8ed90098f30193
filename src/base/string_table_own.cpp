// Texts that have no number in either block and are no single feature's.

#include "base/string_table.h"
#include "base/texts.h"

namespace ostrel {

namespace {

constexpr TableEntry kTable[] = {
    {text::kOutOfRange,
     {"Der eingegebene Wert liegt außerhalb des gültigen Bereichs!",
      "Entered value is out of range!", "La valeur saisie est hors limites !"}},
    {text::kUsedInstead,
     {"Stattdessen wird folgender Wert verwendet: %s", "The following value is used instead: %s",
      "La valeur suivante est utilisée à la place : %s"}},
    {text::kExchangeUnderWay,
     {"Ein anderer Befehl ist noch in Arbeit.", "Another command is still being processed.",
      "Une autre commande est encore en cours."}},
    {text::kExchangeGivenUp,
     {"Der Befehl wurde aufgegeben, weil das Programm beendet wird.",
      "The command was given up because the program is ending.",
      "La commande a été abandonnée parce que le programme se termine."}},
    {text::kLanguageNotAllowed,
     {"Achtung: Nicht erlaubte Sprache angefordert: ",
      "Achtung: Nicht erlaubte Sprache angefordert: ",
      "Achtung: Nicht erlaubte Sprache angefordert: "}},
    {text::kFileNotWritten,
     {"Die Datei konnte nicht geschrieben werden: %s", "The file could not be written: %s",
      "Le fichier n'a pas pu être écrit : %s"}},
    {text::kConnectionFaulty,
     {"Name oder Daten der Verbindung sind nicht zulässig: %s",
      "The name or the data of the connection are not allowed: %s",
      "Le nom ou les données de la liaison ne sont pas admis : %s"}},
    {text::kNotConfirmed,
     {"Nicht bestätigt; es wurde nichts geändert.", "Not confirmed; nothing was changed.",
      "Non confirmé ; rien n'a été modifié."}},
    {text::kNoDisplay,
     {"Kein Bildschirm gefunden; das Programm arbeitet im Terminal.",
      "No display was found; the program works in the terminal.",
      "Aucun écran trouvé ; le programme travaille dans le terminal."}},
    {text::kServerNotRunning,
     {"Der Kommunikationsserver läuft nicht.", "The communication server is not running.",
      "Le serveur de communication n'est pas en marche."}},
    {text::kServerStopped,
     {"Der Kommunikationsserver wird beendet.", "The communication server is ending.",
      "Le serveur de communication se termine."}},
    {text::kNoDeviceAnswers,
     {"Unter dieser Adresse antwortet kein Gerät: %s", "No device answers at this address: %s",
      "Aucun appareil ne répond à cette adresse : %s"}},
    {text::kStationsIncomplete,
     {"Die Verbindung hat mehr als 256 Stationen; die Liste ist nicht vollständig.",
      "The connection has more than 256 stations; the list is not complete.",
      "La liaison compte plus de 256 stations ; la liste est incomplète."}},
    {text::kWrongUsage, {"Falscher Aufruf: %s", "Wrong usage: %s", "Appel incorrect : %s"}},
    {text::kYesNo, {" [j/N] ", " [y/N] ", " [o/N] "}},
    {text::kYesLetters, {"jJ", "yY", "oO"}},
    {text::kNoSuchConnection,
     {"Eine Verbindung mit diesem Namen gibt es nicht: %s",
      "There is no connection with this name: %s", "Il n'y a pas de liaison de ce nom : %s"}},
    {text::kServerRunning,
     {"Der Kommunikationsserver läuft.", "The communication server is running.",
      "Le serveur de communication est en marche."}},
    {text::kReselectAnswering,
     {"Das Gerät antwortet auf dieser Verbindung. Soll sie trotzdem geschlossen und neu geöffnet "
      "werden?",
      "The device answers on this connection. Close it and open it anew all the same?",
      "L'appareil répond sur cette liaison. La fermer et la rouvrir malgré tout ?"}},
    {text::kChooseNumber,
     {"Nummer der Verbindung (leer = abbrechen): ", "Number of the connection (empty = cancel): ",
      "Numéro de la liaison (vide = annuler) : "}},
    {text::kOtherSelection,
     {"Inzwischen wurde ein anderes Gerät ausgewählt; es wurde nichts gesendet.",
      "Another device was selected meanwhile; nothing was sent.",
      "Un autre appareil a été sélectionné entre-temps ; rien n'a été envoyé."}},
    {text::kSettingsNotStored,
     {"Die Einstellungen wurden nicht gespeichert.", "The settings were not stored.",
      "Les paramètres n'ont pas été enregistrés."}},
    {text::kSettingsPutAside,
     {"Die Datei der Einstellungen war kein Text und wurde zur Seite gelegt; es gelten die "
      "Vorgaben: %s",
      "The file of the settings was no text and was put aside; the defaults hold: %s",
      "Le fichier des paramètres n'était pas du texte et a été mis de côté ; les valeurs par "
      "défaut s'appliquent : %s"}},
    {text::kNothingSent,
     {"Es wurde nichts gesendet.", "Nothing was sent.", "Rien n'a été envoyé."}},

    // Captions of windows and tables.
    {text::kAddress, {"Adresse", "Address", "Adresse"}},
    {text::kName, {"Name", "Name", "Nom"}},
    {text::kVersion, {"Version", "Version", "Version"}},
    {text::kModel, {"Modell", "Model", "Modèle"}},
    {text::kFirmware, {"Firmware", "Firmware", "Micrologiciel"}},
    {text::kSerialNumber, {"Seriennummer", "Serial number", "N° de série"}},
    {text::kTarget, {"Ziel", "Target", "Cible"}},
    {text::kKind, {"Art", "Kind", "Genre"}},
    {text::kProcess, {"Prozess", "Process", "Processus"}},
    {text::kUptime, {"Läuft seit", "Running for", "En marche depuis"}},
    {text::kPrograms, {"Programme", "Programs", "Programmes"}},
    {text::kChannels, {"Kanäle", "Channels", "Canaux"}},
    {text::kSelectDeviceButton,
     {"&Gerät auswählen ...", "Select &Device ...", "Choi&sir l'appareil ..."}},
    {text::kRead, {"&Lesen", "&Read", "&Lire"}},
    {text::kSimulatedDevices,
     {"SIMULATION: Diese Verbindung führt zu simulierten Geräten, nicht zu einer Anlage.",
      "SIMULATION: this connection leads to simulated devices, not to a plant.",
      "SIMULATION : cette liaison mène à des appareils simulés, pas à une installation."}},
    {text::kMenuProgram, {"&Programm", "&Program", "&Programme"}},
    {text::kMenuQuit, {"&Beenden", "&Quit", "&Quitter"}},
    {text::kMenuView, {"&Ansicht", "&View", "&Affichage"}},
    {text::kSchemeSystem,
     {"Farben wie das &System", "Colours as the &system", "Couleurs du &système"}},
    {text::kSchemeLight, {"&Hell", "&Light", "&Clair"}},
    {text::kSchemeDark, {"&Dunkel", "&Dark", "S&ombre"}},
    {text::kTreeLogs,
     {"Protokolle und Statistik", "Logs and statistics", "Journaux et statistiques"}},
    {text::kNotConnected, {"Nicht verbunden", "Not connected", "Non connecté"}},
    {text::kReading,
     {"Das Gerät wird gelesen ...", "Reading the device ...", "Lecture de l'appareil ..."}},
    {text::kReopenConnection,
     {"Verbindung &neu öffnen", "Reopen co&nnection", "&Rouvrir la liaison"}},
    {text::kSelectConnection, {"Verbindung auswählen", "Select connection", "Choisir la liaison"}},
    {text::kTreeOperation, {"Bedienung", "Operation", "Conduite"}},
    {text::kTreeConfiguration, {"Konfiguration", "Configuration", "Configuration"}},
    {text::kConsole, {"Konsole", "Console", "Console"}},

    // The desktop program.
    {text::kYes, {"&Ja", "&Yes", "&Oui"}},
    {text::kNo, {"&Nein", "&No", "&Non"}},
    {text::kConnectedTo, {"Verbunden: %s", "Connected: %s", "Connecté : %s"}},
    {text::kSimulationMark, {"SIMULATION", "SIMULATION", "SIMULATION"}},
    {text::kReadPage, {"Seite &lesen", "&Read page", "&Lire la page"}},

    // Connections: their list, their data, their test.
    {text::kMenuConnections, {"&Verbindungen ...", "&Connections ...", "Li&aisons ..."}},
    {text::kConnectionsTitle, {"Verbindungen", "Connections", "Liaisons"}},
    {text::kConnectionList,
     {"&Gespeicherte Verbindungen", "Stored &connections", "Liaisons enre&gistrées"}},
    {text::kState, {"Zustand", "State", "État"}},
    {text::kIsCurrent, {"aktuell", "current", "actuelle"}},
    {text::kIsOpen, {"offen", "open", "ouverte"}},
    {text::kAdd, {"&Hinzufügen ...", "&Add ...", "A&jouter ..."}},
    {text::kChange, {"Ä&ndern ...", "C&hange ...", "&Modifier ..."}},
    {text::kRemove, {"&Entfernen ...", "&Remove ...", "&Supprimer ..."}},
    {text::kTest, {"&Testen", "&Test", "&Tester"}},
    {text::kUse, {"&Verwenden", "&Use", "&Utiliser"}},
    {text::kClose, {"&Schließen", "C&lose", "&Fermer"}},
    {text::kTestResult, {"E&rgebnis des Tests", "Test r&esult", "&Résultat du test"}},
    {text::kTesting,
     {"Die Verbindung %s wird getestet ...", "Testing connection %s ...",
      "Test de la liaison %s ..."}},
    {text::kNewConnection, {"Neue Verbindung", "New connection", "Nouvelle liaison"}},
    {text::kChangeConnection, {"Verbindung ändern", "Change connection", "Modifier la liaison"}},
    {text::kRemoveConnection,
     {"Verbindung %s entfernen?", "Remove connection %s?", "Supprimer la liaison %s ?"}},
    {text::kConnectionTaken,
     {"Eine Verbindung mit diesem Namen gibt es schon: %s",
      "There is already a connection with this name: %s",
      "Il y a déjà une liaison de ce nom : %s"}},
    {text::kBuiltIn,
     {"Die eingebaute Verbindung lässt sich weder ändern noch entfernen: %s",
      "The built-in connection can be neither changed nor removed: %s",
      "La liaison intégrée ne peut être ni modifiée ni supprimée : %s"}},
    {text::kOptionProblem,
     {"Eine der Angaben passt nicht zur Art der Verbindung.",
      "One of the options does not fit the kind of connection.",
      "Une des indications ne convient pas au genre de liaison."}},
    {text::kNameProblem,
     {"Ein Name hat 1 bis 64 Zeichen, weder / noch \\ und keine Leerzeichen am Rand.",
      "A name has 1 to 64 characters, neither / nor \\ and no blanks at its ends.",
      "Un nom a de 1 à 64 caractères, sans / ni \\, et pas d'espaces aux extrémités."}},
    {text::kKindProblem,
     {"Diese Art von Verbindung ist nicht bekannt.", "This kind of connection is not known.",
      "Ce genre de liaison est inconnu."}},
    {text::kHostProblem,
     {"Der Host fehlt: Name oder IP-Adresse des Geräteservers.",
      "The host is missing: name or IP address of the device server.",
      "L'hôte manque : nom ou adresse IP du serveur de périphériques."}},
    {text::kPortProblem,
     {"Der Port ist eine Zahl von 1 bis 65535.", "The port is a number from 1 to 65535.",
      "Le port est un nombre de 1 à 65535."}},
    {text::kDeviceProblem,
     {"Die Schnittstelle fehlt, z. B. /dev/ttyUSB0.",
      "The serial device is missing, e.g. /dev/ttyUSB0.",
      "L'interface manque, p. ex. /dev/ttyUSB0."}},
    {text::kBaudProblem,
     {"Die Baudrate ist eine positive ganze Zahl.", "The baud rate is a positive whole number.",
      "Le débit en bauds est un nombre entier positif."}},
    {text::kFramingProblem,
     {"Parität oder Stoppbits sind nicht bekannt.", "The parity or the stop bits are not known.",
      "La parité ou les bits d'arrêt sont inconnus."}},
    {text::kKindSimulator, {"Simulierte Geräte", "Simulated devices", "Appareils simulés"}},
    {text::kKindTcp, {"Netzwerk (TCP)", "Network (TCP)", "Réseau (TCP)"}},
    {text::kKindSerial, {"Serielle Schnittstelle", "Serial line", "Liaison série"}},
    {text::kFieldName, {"&Name", "&Name", "&Nom"}},
    {text::kFieldKind, {"A&rt", "&Kind", "&Genre"}},
    {text::kFieldHost, {"&Host", "&Host", "&Hôte"}},
    {text::kFieldPort, {"&Port", "&Port", "&Port"}},
    {text::kFieldDevice, {"&Schnittstelle", "&Device", "&Interface"}},
    {text::kFieldBaud, {"&Baudrate", "&Baud rate", "&Débit (bauds)"}},
    {text::kFieldParity, {"Pari&tät", "Pari&ty", "Pari&té"}},
    {text::kFieldStopBits, {"Stoppb&its", "&Stop bits", "&Bits d'arrêt"}},
    {text::kParityNone, {"keine", "none", "aucune"}},
    {text::kParityEven, {"gerade", "even", "paire"}},
    {text::kParityOdd, {"ungerade", "odd", "impaire"}},
    {text::kParityMark, {"1 (mark)", "1 (mark)", "1 (mark)"}},
    {text::kParitySpace, {"0 (space)", "0 (space)", "0 (space)"}},
    {text::kTestPassed,
     {"Die Verbindung %s arbeitet.", "Connection %s works.", "La liaison %s fonctionne."}},
    {text::kTestNoServer,
     {"Verbindung %s: Der Kommunikationsserver ist nicht erreichbar.",
      "Connection %s: the communication server cannot be reached.",
      "Liaison %s : le serveur de communication est inaccessible."}},
    {text::kTestNotOpen,
     {"Die Verbindung %s lässt sich nicht öffnen.", "Connection %s does not open.",
      "La liaison %s ne s'ouvre pas."}},
    {text::kTestNoAnswer,
     {"Die Verbindung %s ist offen, aber es kam keine brauchbare Antwort.",
      "Connection %s is open, but no usable answer came.",
      "La liaison %s est ouverte, mais aucune réponse utilisable n'est arrivée."}},
    {text::kErrorAnswer,
     {"Die Leitung arbeitet; nur diesen Befehl kennt das Gerät nicht.",
      "The line works; it is only this command that the device does not know.",
      "La ligne fonctionne ; seule cette commande est inconnue de l'appareil."}},
    {text::kEmptyAnswer, {"(leere Antwort)", "(empty answer)", "(réponse vide)"}},
    {text::kHelpHost,
     {"Abhilfe: Host und Port prüfen. Ist der Geräteserver eingeschaltet, und ist er über das "
      "Netzwerk erreichbar?",
      "Remedy: check host and port. Is the device server switched on, and can it be reached over "
      "the network?",
      "Remède : vérifier l'hôte et le port. Le serveur de périphériques est-il en marche et "
      "accessible par le réseau ?"}},
    {text::kHelpAdapter,
     {"Abhilfe: Den Adapter einstecken und andere Programme schließen, die diese Schnittstelle "
      "benutzen.",
      "Remedy: plug in the adapter, and close other programs that use this interface.",
      "Remède : brancher l'adaptateur et fermer les autres programmes qui utilisent cette "
      "interface."}},
    {text::kHelpPermission,
     {"Abhilfe: Wo die Berechtigung fehlt, nennt die Beschreibung den Befehl, der sie erteilt.",
      "Remedy: where the permission is missing, the description names the command that grants it.",
      "Remède : s'il manque une autorisation, la description indique la commande qui l'accorde."}},
    {text::kHelpPortShared,
     {"Abhilfe: Die andere Verbindung schließen, die auf dieselbe Schnittstelle führt, oder nur "
      "eine von beiden benutzen.",
      "Remedy: close the other connection that leads to the same port, or use only one of the two.",
      "Remède : fermer l'autre liaison qui mène au même port, ou n'utiliser que l'une des deux."}},
    {text::kHelpSilent,
     {"Abhilfe: Ist das Gerät eingeschaltet und das Kabel eingesteckt? Stimmen Baudrate und "
      "Parität mit dem Gerät überein?",
      "Remedy: is the device switched on and the cable plugged in? Do baud rate and parity match "
      "those of the device?",
      "Remède : l'appareil est-il en marche et le câble branché ? Le débit et la parité sont-ils "
      "ceux de l'appareil ?"}},
    {text::kHelpDisturbed,
     {"Abhilfe: Baudrate und Parität mit dem Gerät vergleichen; Kabel, Schirm und Abschluss der "
      "Leitung auf Störungen prüfen.",
      "Remedy: compare baud rate and parity with the device; check cable, shield and termination "
      "of the line for interference.",
      "Remède : comparer le débit et la parité à ceux de l'appareil ; vérifier câble, blindage et "
      "terminaison de la ligne."}},
    {text::kHelpTooBig,
     {"Abhilfe: Prüfen, ob an dieser Leitung das erwartete Gerät hängt; so lange Antworten gibt es "
      "sonst nicht.",
      "Remedy: check that the expected device is on this line; none answers at such length.",
      "Remède : vérifier que l'appareil attendu est bien sur cette ligne ; aucun ne répond aussi "
      "longuement."}},
    {text::kHelpOnline,
     {"Abhilfe: Ein anderes Programm hat den Online-Kanal. Lassen Sie es zu Ende arbeiten und "
      "wiederholen Sie den Test.",
      "Remedy: another program has the online channel. Let it finish, then repeat the test.",
      "Remède : un autre programme occupe le canal en ligne. Laissez-le terminer, puis répétez le "
      "test."}},
    {text::kHelpName,
     {"Abhilfe: Den Namen prüfen; \"ostrel connections\" zeigt die Liste.",
      "Remedy: check the name; \"ostrel connections\" shows the list.",
      "Remède : vérifier le nom ; \"ostrel connections\" affiche la liste."}},
    {text::kHelpData,
     {"Abhilfe: Die Daten der Verbindung ändern. Wurden sie eben erst geändert: die Programme "
      "schließen, die sie noch benutzen.",
      "Remedy: change the data of the connection. If they were changed just now: close the "
      "programs that still use it.",
      "Remède : modifier les données de la liaison. Si elles viennent de l'être : fermer les "
      "programmes qui l'utilisent encore."}},
    {text::kHelpServer,
     {"Abhilfe: Noch einmal versuchen. Bleibt der Fehler, prüfen, ob ostrel-server neben den "
      "Programmen installiert ist.",
      "Remedy: try again. If the fault stays, check that ostrel-server is installed beside the "
      "programs.",
      "Remède : essayer encore. Si l'erreur persiste, vérifier qu'ostrel-server est installé à "
      "côté des programmes."}},
    {text::kHelp, {"&Hilfe", "&Help", "&Aide"}},
    {text::kHelpStations,
     {"Jede Zeile ist ein Gerät der Verbindung: Adresse und Name, in Klammern der Typ, dann die "
      "Firmware. \"(AA:)\" steht hinter dem Gerät, an dem die Leitung steckt; die anderen sind "
      "über den Bus erreichbar. Reichen die Rechte nicht weiter, erscheint nur dieses.\n\n"
      "Pfeiltasten: Gerät markieren\nAnfang der Adresse oder des Namens tippen: dorthin springen\n"
      "Eingabetaste oder Doppelklick: Gerät auswählen\nEsc: abbrechen",
      "Each line is a device of the connection: address and name, its type in brackets, then the "
      "firmware. \"(AA:)\" stands behind the device at which the line is plugged in; the others "
      "are "
      "reached over the bus. Where the grants reach no further, only that one is listed.\n\n"
      "Arrow keys: mark a device\nTyping the beginning of an address or a name: jump there\n"
      "Enter or a double click: select the device\nEsc: cancel",
      "Chaque ligne est un appareil de la liaison : adresse et nom, son type entre parenthèses, "
      "puis le logiciel interne. « (AA:) » suit l'appareil sur lequel la ligne est branchée ; les "
      "autres sont joints par le bus. Si les droits ne vont pas plus loin, lui seul est listé.\n\n"
      "Flèches : marquer un appareil\nTaper le début d'une adresse ou d'un nom : y aller\n"
      "Entrée ou double clic : choisir l'appareil\nÉchap : annuler"}},

    // The frame of the main window.
    {text::kOtherDevice,
     {"Es antwortet ein anderes Gerät als das ausgewählte. Lesen ist möglich; Schreiben bleibt "
      "gesperrt, bis Sie ein Gerät auswählen.",
      "Another device answers than the selected one. Reading is possible; writing stays locked "
      "until you select a device.",
      "Un autre appareil répond que celui choisi. La lecture est possible ; l'écriture reste "
      "bloquée jusqu'à ce que vous choisissiez un appareil."}},
    {text::kDeviceBefore, {"Ausgewählt: %s", "Selected: %s", "Choisi : %s"}},
    {text::kDeviceNow, {"Es antwortet: %s", "Answering: %s", "Répond : %s"}},
    {text::kWritingLocked,
     {"Schreiben ist gesperrt, weil ein anderes Gerät antwortet als das ausgewählte. Wählen Sie "
      "das Gerät neu aus.",
      "Writing is locked because another device answers than the selected one. Select the device "
      "anew.",
      "L'écriture est bloquée parce qu'un autre appareil répond que celui choisi. Choisissez "
      "l'appareil de nouveau."}},
    {text::kOtherDeviceMark,
     {"ANDERES GERÄT: Es antwortet nicht das ausgewählte. Schreiben ist gesperrt.",
      "OTHER DEVICE: it is not the selected one that answers. Writing is locked.",
      "AUTRE APPAREIL : ce n'est pas celui choisi qui répond. L'écriture est bloquée."}},
    {text::kConnectionLost,
     {"Verbindung verloren – der nächste Befehl öffnet sie neu",
      "Connection lost – the next command opens it again",
      "Liaison perdue – la prochaine commande la rouvre"}},
    {text::kPageNotOnModel,
     {"Diese Seite gibt es beim ausgewählten Gerät (%s) nicht.",
      "The selected device (%s) does not have this page.",
      "L'appareil choisi (%s) n'a pas cette page."}},
    {text::kServiceLog,
     {"&Service-Protokoll schreiben", "&Write service log", "&Tenir le journal de service"}},
    {text::kReadEveryMinute, {"&Jede Minute lesen", "Read every &minute", "Lire chaque &minute"}},
};
static_assert(Ascending(kTable, Own(0), kSharedTexts));

}  // namespace

std::span<const TableEntry> OwnBlock() {
  return kTable;
}

}  // namespace ostrel
