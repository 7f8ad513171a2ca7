<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>AccessCheck</name>
    <message>
        <source>You have no access to Ortu from the menu bar, the dock icon, a cursor hot spot or a hot key.</source>
        <translation>Weder ein Statussymbol noch die Taskleiste, eine Bildschirmecke oder ein Tastenkürzel führt zu Ortu.</translation>
    </message>
    <message>
        <source>You will only be able to re-open the window by double-clicking the application icon in the Finder.</source>
        <translation>Das Fenster lässt sich nur noch öffnen, indem Sie im Dateimanager auf das Symbol der Anwendung doppelklicken.</translation>
    </message>
    <message>
        <source>You only have access to Ortu using the following hot key:

%1</source>
        <translation>Ortu ist nur über dieses Tastenkürzel zu erreichen:

%1</translation>
    </message>
    <message>
        <source>You can also re-open the window by double-clicking the application icon in the Finder.</source>
        <translation>Das Fenster lässt sich auch öffnen, indem Sie im Dateimanager auf das Symbol der Anwendung doppelklicken.</translation>
    </message>
    <message>
        <source>You must restart Ortu for this option to take effect.</source>
        <translation>Diese Einstellung gilt erst nach einem Neustart von Ortu.</translation>
    </message>
</context>
<context>
    <name>AlertDialog</name>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>Alerts</name>
    <message>
        <source>Ok</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>CatalogueFiles</name>
    <message>
        <source>The list of what is excluded was lost.</source>
        <translation>Die Liste der ausgeschlossenen Anwendungen ging verloren.</translation>
    </message>
    <message>
        <source>The list of favourites was lost.</source>
        <translation>Die Liste der Favoriten ging verloren.</translation>
    </message>
    <message>
        <source>It is again as it was on %1.</source>
        <translation>Sie ist wieder so, wie sie am %1 war.</translation>
    </message>
    <message>
        <source>Changes of favourites and exclusions are not kept: %1.</source>
        <translation>Änderungen an Favoriten und Ausschlüssen bleiben nicht erhalten: %1.</translation>
    </message>
    <message>
        <source>Changes of colours are not kept: %1.</source>
        <translation>Änderungen an Farben bleiben nicht erhalten: %1.</translation>
    </message>
    <message>
        <source>The list of colours that were chosen for icons was lost.</source>
        <translation>Die Liste der Farben, die für Symbole gewählt wurden, ging verloren.</translation>
    </message>
</context>
<context>
    <name>ColorMenu</name>
    <message>
        <source>Colour</source>
        <translation>Farbe</translation>
    </message>
    <message>
        <source>As Measured</source>
        <translation>Wie gemessen</translation>
    </message>
</context>
<context>
    <name>ColorNames</name>
    <message>
        <source>red</source>
        <extracomment>The name of a colour, and other words that people may type for it, parted by |</extracomment>
        <translation>Rot</translation>
    </message>
    <message>
        <source>orange</source>
        <translation>Orange</translation>
    </message>
    <message>
        <source>yellow</source>
        <translation>Gelb</translation>
    </message>
    <message>
        <source>green</source>
        <translation>Grün</translation>
    </message>
    <message>
        <source>turquoise|cyan|teal</source>
        <translation>Türkis|Cyan|Petrol</translation>
    </message>
    <message>
        <source>blue</source>
        <translation>Blau</translation>
    </message>
    <message>
        <source>purple|violet</source>
        <translation>Violett|Lila|Purpur</translation>
    </message>
    <message>
        <source>pink|magenta</source>
        <translation>Rosa|Pink|Magenta</translation>
    </message>
    <message>
        <source>brown</source>
        <translation>Braun</translation>
    </message>
    <message>
        <source>white</source>
        <translation>Weiß|Weiss</translation>
    </message>
    <message>
        <source>grey|gray</source>
        <translation>Grau</translation>
    </message>
    <message>
        <source>black</source>
        <translation>Schwarz</translation>
    </message>
    <message>
        <source>dark %1</source>
        <comment>a colour</comment>
        <translation>dunkles %1</translation>
    </message>
    <message>
        <source>light %1</source>
        <comment>a colour</comment>
        <translation>helles %1</translation>
    </message>
</context>
<context>
    <name>ColorSortingOptions</name>
    <message>
        <source>Order by Colour</source>
        <translation>Nach Farbe ordnen</translation>
    </message>
    <message>
        <source>Hue that comes &amp;first:</source>
        <translation>&amp;Erster Farbton:</translation>
    </message>
    <message>
        <source>A colour counts from a &amp;saturation of:</source>
        <translation>Farbe zählt ab einer &amp;Sättigung von:</translation>
    </message>
    <message>
        <source>An icon counts as coloured from a s&amp;hare of:</source>
        <translation>Ein Symbol gilt als &amp;farbig ab einem Anteil von:</translation>
    </message>
    <message>
        <source>Order &amp;grey icons by the little colour they have</source>
        <translation>&amp;Graue Symbole nach ihrem Rest an Farbe ordnen</translation>
    </message>
    <message>
        <source>&amp;Defaults</source>
        <translation>&amp;Vorgaben</translation>
    </message>
</context>
<context>
    <name>DirectoriesTable</name>
    <message>
        <source>Folders to scan</source>
        <translation>Zu durchsuchende Ordner</translation>
    </message>
    <message>
        <source>Drop folders here to search them for applications</source>
        <translation>Ziehen Sie Ordner hierher, um sie nach Anwendungen zu durchsuchen</translation>
    </message>
</context>
<context>
    <name>ExclusionWindow</name>
    <message>
        <source>Exclude Applications</source>
        <translation>Anwendungen ausschließen</translation>
    </message>
    <message>
        <source>Those in the &amp;dock or panel of the desktop</source>
        <translation>Was im &amp;Dock oder in der Leiste des Desktops liegt</translation>
    </message>
    <message>
        <source>Those whose &amp;name contains one of these words:</source>
        <translation>Alle, deren &amp;Name eines dieser Wörter enthält:</translation>
    </message>
    <message>
        <source>Excluded applications leave the group “Included”. Each can be included again from the group “Excluded”.</source>
        <translation>Ausgeschlossene Anwendungen verlassen die Gruppe „Eingeschlossen“. In der Gruppe „Ausgeschlossen“ lässt sich jede wieder einschließen.</translation>
    </message>
    <message>
        <source>Words</source>
        <translation>Wörter</translation>
    </message>
    <message>
        <source>&amp;Exclude</source>
        <translation>&amp;Ausschließen</translation>
    </message>
</context>
<context>
    <name>GridItem</name>
    <message>
        <source>%1 of %2</source>
        <comment>place of an icon among all</comment>
        <translation>%1 von %2</translation>
    </message>
    <message>
        <source>place %1 in group %2</source>
        <translation>Platz %1 in Gruppe %2</translation>
    </message>
    <message>
        <source>new</source>
        <translation>neu</translation>
    </message>
    <message>
        <source>running</source>
        <translation>läuft</translation>
    </message>
    <message>
        <source>excluded</source>
        <translation>ausgeschlossen</translation>
    </message>
</context>
<context>
    <name>HotKey</name>
    <message>
        <source>Bind the command &quot;ortu --toggle&quot; to a key in the settings of your desktop.</source>
        <translation>Legen Sie den Befehl „ortu --toggle“ in den Einstellungen Ihres Desktops auf eine Taste.</translation>
    </message>
</context>
<context>
    <name>HotKeyControl</name>
    <message>
        <source>No hot key</source>
        <translation>Kein Tastenkürzel</translation>
    </message>
    <message>
        <source>Key</source>
        <translation>Taste</translation>
    </message>
    <message>
        <source>control</source>
        <translation>Strg</translation>
    </message>
    <message>
        <source>option</source>
        <translation>Alt</translation>
    </message>
    <message>
        <source>command</source>
        <translation>Super</translation>
    </message>
    <message>
        <source>shift</source>
        <translation>Umschalt</translation>
    </message>
    <message>
        <source>No key summons Ortu: %1.</source>
        <translation>Keine Taste ruft Ortu auf: %1.</translation>
    </message>
    <message>
        <source>Without Control or the like, this key reaches no other program.</source>
        <translation>Ohne Strg oder Ähnliches erreicht diese Taste kein anderes Programm mehr.</translation>
    </message>
</context>
<context>
    <name>HotKeyPractice</name>
    <message>
        <source>Choose a key, then press it.</source>
        <translation>Wählen Sie eine Taste und drücken Sie sie dann.</translation>
    </message>
    <message>
        <source>Press it now: &lt;b&gt;%1&lt;/b&gt;</source>
        <translation>Drücken Sie jetzt: &lt;b&gt;%1&lt;/b&gt;</translation>
    </message>
    <message>
        <source>&lt;b&gt;It arrived.&lt;/b&gt; From now on this key shows and hides Ortu.</source>
        <translation>&lt;b&gt;Angekommen.&lt;/b&gt; Ab jetzt blendet diese Taste Ortu ein und aus.</translation>
    </message>
</context>
<context>
    <name>HotKeyRecorder</name>
    <message>
        <source>Press It Now</source>
        <translation>Jetzt drücken</translation>
    </message>
    <message>
        <source>Set by &amp;Pressing…</source>
        <translation>Taste &amp;drücken&#xa0;…</translation>
    </message>
    <message>
        <source>That key cannot be the hot key.</source>
        <translation>Diese Taste eignet sich nicht als Tastenkürzel.</translation>
    </message>
    <message>
        <source>Hold a modifier key with it: alone, it would no longer reach other programs.</source>
        <translation>Halten Sie Strg, Alt oder Super dazu: Allein würde sie andere Programme nicht mehr erreichen.</translation>
    </message>
</context>
<context>
    <name>HueBar</name>
    <message>
        <source>Colours</source>
        <translation>Farben</translation>
    </message>
</context>
<context>
    <name>KeyTable</name>
    <message>
        <source>Space</source>
        <translation>Leertaste</translation>
    </message>
    <message>
        <source>Tab</source>
        <translation>Tab</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Eingabetaste</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Rücktaste</translation>
    </message>
    <message>
        <source>Forward Delete</source>
        <translation>Entf</translation>
    </message>
    <message>
        <source>Escape</source>
        <translation>Esc</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Pos1</translation>
    </message>
    <message>
        <source>End</source>
        <translation>Ende</translation>
    </message>
    <message>
        <source>Page Up</source>
        <translation>Bild auf</translation>
    </message>
    <message>
        <source>Page Down</source>
        <translation>Bild ab</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Einfg</translation>
    </message>
    <message>
        <source>Left Arrow</source>
        <translation>Pfeil links</translation>
    </message>
    <message>
        <source>Right Arrow</source>
        <translation>Pfeil rechts</translation>
    </message>
    <message>
        <source>Up Arrow</source>
        <translation>Pfeil auf</translation>
    </message>
    <message>
        <source>Down Arrow</source>
        <translation>Pfeil ab</translation>
    </message>
    <message>
        <source>Keypad 0</source>
        <translation>Ziffernblock 0</translation>
    </message>
    <message>
        <source>Keypad 1</source>
        <translation>Ziffernblock 1</translation>
    </message>
    <message>
        <source>Keypad 2</source>
        <translation>Ziffernblock 2</translation>
    </message>
    <message>
        <source>Keypad 3</source>
        <translation>Ziffernblock 3</translation>
    </message>
    <message>
        <source>Keypad 4</source>
        <translation>Ziffernblock 4</translation>
    </message>
    <message>
        <source>Keypad 5</source>
        <translation>Ziffernblock 5</translation>
    </message>
    <message>
        <source>Keypad 6</source>
        <translation>Ziffernblock 6</translation>
    </message>
    <message>
        <source>Keypad 7</source>
        <translation>Ziffernblock 7</translation>
    </message>
    <message>
        <source>Keypad 8</source>
        <translation>Ziffernblock 8</translation>
    </message>
    <message>
        <source>Keypad 9</source>
        <translation>Ziffernblock 9</translation>
    </message>
    <message>
        <source>Keypad .</source>
        <translation>Ziffernblock ,</translation>
    </message>
    <message>
        <source>Keypad *</source>
        <translation>Ziffernblock *</translation>
    </message>
    <message>
        <source>Keypad +</source>
        <translation>Ziffernblock +</translation>
    </message>
    <message>
        <source>Keypad /</source>
        <translation>Ziffernblock /</translation>
    </message>
    <message>
        <source>Keypad -</source>
        <translation>Ziffernblock -</translation>
    </message>
    <message>
        <source>Keypad =</source>
        <translation>Ziffernblock =</translation>
    </message>
    <message>
        <source>Keypad Clear</source>
        <translation>Num</translation>
    </message>
    <message>
        <source>Keypad Enter</source>
        <translation>Ziffernblock Enter</translation>
    </message>
    <message>
        <source>missing resource</source>
        <translation>fehlende Ressource</translation>
    </message>
    <message>
        <source>%1 control + </source>
        <translation>%1 Strg + </translation>
    </message>
    <message>
        <source>%1 option + </source>
        <translation>%1 Alt + </translation>
    </message>
    <message>
        <source>%1 command + </source>
        <translation>%1 Super + </translation>
    </message>
    <message>
        <source>%1 shift + </source>
        <translation>%1 Umschalt + </translation>
    </message>
</context>
<context>
    <name>LaunchAtLoginController</name>
    <message>
        <source>%1 will not start at login: %2.</source>
        <translation>%1 startet nicht bei der Anmeldung: %2.</translation>
    </message>
    <message>
        <source>%1 will go on starting at login: %2.</source>
        <translation>%1 startet weiterhin bei der Anmeldung: %2.</translation>
    </message>
</context>
<context>
    <name>LaunchContext</name>
    <message>
        <source>Starting %1</source>
        <translation>%1 wird gestartet</translation>
    </message>
</context>
<context>
    <name>MainMenu</name>
    <message>
        <source>Move</source>
        <translation>Verschieben</translation>
    </message>
    <message>
        <source>Add Favorite</source>
        <translation>Favorit hinzufügen</translation>
    </message>
    <message>
        <source>Remove Favorite</source>
        <translation>Favorit entfernen</translation>
    </message>
    <message>
        <source>Exclude</source>
        <translation>Ausschließen</translation>
    </message>
    <message>
        <source>Include</source>
        <translation>Einschließen</translation>
    </message>
    <message>
        <source>Show or Hide Ortu</source>
        <translation>Ortu ein- oder ausblenden</translation>
    </message>
    <message>
        <source>Preferences…</source>
        <translation>Einstellungen&#xa0;…</translation>
    </message>
    <message>
        <source>Exclude Applications…</source>
        <translation>Anwendungen ausschließen&#xa0;…</translation>
    </message>
    <message>
        <source>About Ortu</source>
        <translation>Über Ortu</translation>
    </message>
    <message>
        <source>Welcome to Ortu</source>
        <translation>Willkommen bei Ortu</translation>
    </message>
    <message>
        <source>Ortu User Guide</source>
        <translation>Handbuch zu Ortu</translation>
    </message>
    <message>
        <source>Rescan All Applications</source>
        <translation>Alle Anwendungen neu suchen</translation>
    </message>
    <message>
        <source>Ortu Home Page</source>
        <translation>Website von Ortu</translation>
    </message>
    <message>
        <source>Send Feedback…</source>
        <translation>Rückmeldung senden&#xa0;…</translation>
    </message>
    <message>
        <source>Quit Ortu</source>
        <translation>Ortu beenden</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Rückgängig</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Wiederholen</translation>
    </message>
    <message>
        <source>Undo %1</source>
        <translation>Rückgängig: %1</translation>
    </message>
    <message>
        <source>Redo %1</source>
        <translation>Wiederholen: %1</translation>
    </message>
    <message>
        <source>Check for Updates…</source>
        <translation>Nach Updates suchen&#xa0;…</translation>
    </message>
    <message>
        <source>Colour</source>
        <translation>Farbe</translation>
    </message>
</context>
<context>
    <name>OTApp</name>
    <message>
        <source>%1 cannot be started: it is no longer there.</source>
        <translation>%1 lässt sich nicht starten: Die Anwendung ist nicht mehr da.</translation>
    </message>
    <message>
        <source>%1 cannot be started: its program is missing or may not be run.</source>
        <translation>%1 lässt sich nicht starten: Das Programm fehlt oder darf nicht ausgeführt werden.</translation>
    </message>
    <message>
        <source>%1 cannot be started.</source>
        <translation>%1 lässt sich nicht starten.</translation>
    </message>
</context>
<context>
    <name>OTArrayController</name>
    <message>
        <source>This is not a folder. It is not searched for applications.</source>
        <translation>Das ist kein Ordner. Hier wird nicht nach Anwendungen gesucht.</translation>
    </message>
    <message>
        <source>This folder does not exist.</source>
        <translation>Diesen Ordner gibt es nicht.</translation>
    </message>
</context>
<context>
    <name>OTController</name>
    <message>
        <source>No program here opens PDF files. The user guide is %1.</source>
        <translation>Hier öffnet kein Programm PDF-Dateien. Das Handbuch ist die Datei %1.</translation>
    </message>
    <message>
        <source>Are you sure you want to quit Ortu?</source>
        <translation>Möchten Sie Ortu wirklich beenden?</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>Don&apos;t Quit</source>
        <translation>Nicht beenden</translation>
    </message>
    <message>
        <source>Mission Control currently contains multiple desktops.</source>
        <translation>Mission Control enthält zurzeit mehrere Schreibtische.</translation>
    </message>
    <message>
        <source>For Ortu to function properly, please control-click on Ortu&apos;s Dock icon and assign it to &apos;All Desktops&apos;.</source>
        <translation>Damit Ortu richtig funktioniert, klicken Sie bitte mit gedrückter Strg-Taste auf sein Symbol im Dock und weisen Sie es „Allen Schreibtischen“ zu.</translation>
    </message>
    <message>
        <source>Your feedback has not been sent yet.</source>
        <translation>Ihre Rückmeldung wurde noch nicht gesendet.</translation>
    </message>
    <message>
        <source>Wait</source>
        <translation>Warten</translation>
    </message>
    <message>
        <source>Looking for a newer version…</source>
        <translation>Suche nach einer neueren Version&#xa0;…</translation>
    </message>
</context>
<context>
    <name>OTIconOverlayView</name>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>Filter: %1</source>
        <translation>Filter: %1</translation>
    </message>
</context>
<context>
    <name>OTIconView</name>
    <message>
        <source>%1 cannot be started: it is no longer there.</source>
        <translation>%1 lässt sich nicht starten: Die Anwendung ist nicht mehr da.</translation>
    </message>
    <message>
        <source>Undone for %1.</source>
        <translation>Für %1 rückgängig gemacht.</translation>
    </message>
    <message>
        <source>Redone for %1.</source>
        <translation>Für %1 wiederholt.</translation>
    </message>
    <message>
        <source>Contextual Menu</source>
        <translation>Kontextmenü</translation>
    </message>
    <message>
        <source>Show in Finder</source>
        <translation>Im Dateimanager zeigen</translation>
    </message>
    <message>
        <source>Move to New Group</source>
        <translation>In neue Gruppe verschieben</translation>
    </message>
    <message>
        <source>Remove Favorite</source>
        <translation>Favorit entfernen</translation>
    </message>
    <message>
        <source>Include</source>
        <translation>Einschließen</translation>
    </message>
    <message>
        <source>Exclude</source>
        <translation>Ausschließen</translation>
    </message>
    <message>
        <source>Add Favorite</source>
        <translation>Favorit hinzufügen</translation>
    </message>
    <message>
        <source>Add Favorite in New Group</source>
        <translation>Favorit in neuer Gruppe hinzufügen</translation>
    </message>
    <message>
        <source>Hide</source>
        <translation>Ausblenden</translation>
    </message>
    <message>
        <source>Show</source>
        <translation>Einblenden</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>Scanning %1 of %2</source>
        <translation>Suche %1 von %2</translation>
    </message>
    <message>
        <source>%1 is not meant for &quot;%2&quot;. With Ctrl held it opens it all the same.</source>
        <translation>%1 ist nicht für „%2“ gedacht. Mit gedrückter Strg-Taste wird es trotzdem geöffnet.</translation>
    </message>
    <message>
        <source>%1 cannot open &quot;%2&quot;.</source>
        <translation>%1 kann „%2“ nicht öffnen.</translation>
    </message>
    <message>
        <source>Open &quot;%1&quot; with…</source>
        <translation>„%1“ öffnen mit&#xa0;…</translation>
    </message>
    <message>
        <source>Open &quot;%1&quot; and %2 more with…</source>
        <translation>„%1“ und %2 weitere öffnen mit&#xa0;…</translation>
    </message>
    <message>
        <source>No application can open &quot;%1&quot;.</source>
        <translation>Keine Anwendung kann „%1“ öffnen.</translation>
    </message>
    <message>
        <source>No application prefers &quot;%1&quot;. Hold Ctrl to see those that can open it.</source>
        <translation>Keine Anwendung ist für „%1“ gedacht. Halten Sie Strg gedrückt, um alle zu sehen, die es öffnen können.</translation>
    </message>
    <message>
        <source>Running applications</source>
        <translation>Laufende Anwendungen</translation>
    </message>
    <message>
        <source>Included applications</source>
        <translation>Eingeschlossene Anwendungen</translation>
    </message>
    <message>
        <source>Excluded applications</source>
        <translation>Ausgeschlossene Anwendungen</translation>
    </message>
    <message>
        <source>All applications</source>
        <translation>Alle Anwendungen</translation>
    </message>
    <message>
        <source>Missing applications</source>
        <translation>Fehlende Anwendungen</translation>
    </message>
    <message>
        <source>Favorites</source>
        <translation>Favoriten</translation>
    </message>
    <message>
        <source>Nothing is running. An application appears here while it runs.</source>
        <translation>Nichts läuft. Eine Anwendung erscheint hier, solange sie läuft.</translation>
    </message>
    <message>
        <source>Nothing is excluded. Choose Exclude in an application&apos;s menu.</source>
        <translation>Nichts ist ausgeschlossen. Wählen Sie „Ausschließen“ im Menü einer Anwendung.</translation>
    </message>
    <message>
        <source>Nothing is missing. What was excluded and is gone appears here.</source>
        <translation>Nichts fehlt. Hier erscheint, was ausgeschlossen war und nicht mehr da ist.</translation>
    </message>
    <message>
        <source>No favourites yet. Drag an icon onto the Favorite button, or choose Add Favorite in its menu.</source>
        <translation>Noch keine Favoriten. Ziehen Sie ein Symbol auf „Favoriten“, oder wählen Sie „Favorit hinzufügen“ in seinem Menü.</translation>
    </message>
    <message>
        <source>Everything is excluded. Choose Include in an application&apos;s menu.</source>
        <translation>Alles ist ausgeschlossen. Wählen Sie „Einschließen“ im Menü einer Anwendung.</translation>
    </message>
    <message>
        <source>No applications were found in the folders that are searched.</source>
        <translation>In den durchsuchten Ordnern wurden keine Anwendungen gefunden.</translation>
    </message>
    <message>
        <source>Open New Window</source>
        <translation>Neues Fenster öffnen</translation>
    </message>
</context>
<context>
    <name>OTNSAppSubclass</name>
    <message>
        <source>About Ortu</source>
        <translation>Über Ortu</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
</context>
<context>
    <name>OTWelcomeAssistant</name>
    <message>
        <source>Pre&amp;vious</source>
        <translation>&amp;Zurück</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>S&amp;chließen</translation>
    </message>
    <message>
        <source>&amp;Next</source>
        <translation>&amp;Weiter</translation>
    </message>
</context>
<context>
    <name>OpenFeedback</name>
    <message>
        <source>What is your &amp;question?</source>
        <translation>Wie lautet Ihre F&amp;rage?</translation>
    </message>
    <message>
        <source>What is &amp;missing, and what for?</source>
        <translation>Was fe&amp;hlt, und wofür?</translation>
    </message>
    <message>
        <source>How &amp;important is it to you?</source>
        <translation>Wie w&amp;ichtig ist es Ihnen?</translation>
    </message>
    <message>
        <source>Nice to have</source>
        <translation>Wäre schön</translation>
    </message>
    <message>
        <source>Important</source>
        <translation>Wichtig</translation>
    </message>
    <message>
        <source>I cannot do without it</source>
        <translation>Ohne geht es nicht</translation>
    </message>
    <message>
        <source>&amp;What did you expect to happen, and what happened?</source>
        <translation>Was haben Sie erwartet, und was ist &amp;passiert?</translation>
    </message>
    <message>
        <source>What steps will &amp;reproduce the problem?</source>
        <translation>Mit welchen Schritten lässt sich das Problem &amp;nachvollziehen?</translation>
    </message>
    <message>
        <source>&amp;What happened?</source>
        <translation>Was ist &amp;passiert?</translation>
    </message>
    <message>
        <source>Include my &amp;e-mail address:</source>
        <translation>Meine &amp;E-Mail-Adresse mitsenden:</translation>
    </message>
    <message>
        <source>E-mail address</source>
        <translation>E-Mail-Adresse</translation>
    </message>
    <message>
        <source>For an answer</source>
        <translation>Für eine Antwort</translation>
    </message>
    <message>
        <source>Sending</source>
        <translation>Wird gesendet</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>S&amp;chließen</translation>
    </message>
    <message>
        <source>&amp;Send</source>
        <translation>&amp;Senden</translation>
    </message>
    <message>
        <source>&amp;Bug Report</source>
        <translation>&amp;Fehlerbericht</translation>
    </message>
    <message>
        <source>Crash Report</source>
        <translation>Absturzbericht</translation>
    </message>
    <message>
        <source>S&amp;upport Question</source>
        <translation>Fra&amp;ge</translation>
    </message>
    <message>
        <source>&amp;Feature Request</source>
        <translation>W&amp;unsch</translation>
    </message>
    <message>
        <source>Kind of feedback</source>
        <translation>Art der Rückmeldung</translation>
    </message>
    <message>
        <source>%1 Feedback</source>
        <translation>Rückmeldung zu %1</translation>
    </message>
    <message>
        <source>



The text below is application&apos;s crash log, please leave it unchanged to help us determine possible cause!

%1</source>
        <translation>



Es folgt das Absturzprotokoll des Programms. Bitte lassen Sie es so, wie es ist: Es hilft uns, die Ursache zu finden.

%1</translation>
    </message>
    <message>
        <source>Goes to %1, with the versions of %2 (%3) and of the system (%4).</source>
        <translation>Geht an %1, mit den Versionen von %2 (%3) und des Systems (%4).</translation>
    </message>
    <message>
        <source>Letters with accents and other scripts arrive as “?”.</source>
        <translation>Umlaute, Akzente und andere Schriften kommen als „?“ an.</translation>
    </message>
    <message>
        <source>Feedback Sent</source>
        <translation>Rückmeldung gesendet</translation>
    </message>
    <message>
        <source>Your feedback has been sent successfully. Thank you!</source>
        <translation>Ihre Rückmeldung wurde gesendet. Vielen Dank!</translation>
    </message>
    <message>
        <source>Can&apos;t Send Feedback</source>
        <translation>Rückmeldung nicht gesendet</translation>
    </message>
    <message>
        <source>We were unable to send your feedback. Please check your internet connection and try again.</source>
        <translation>Ihre Rückmeldung konnte nicht gesendet werden. Bitte prüfen Sie Ihre Internetverbindung und versuchen Sie es erneut.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>&amp;I cannot work because of this</source>
        <translation>Ich kann deswegen nicht &amp;arbeiten</translation>
    </message>
    <message>
        <source>%1 quit unexpectedly. Please describe what you did just before.</source>
        <translation>%1 wurde unerwartet beendet. Bitte beschreiben Sie, was Sie unmittelbar davor getan haben.</translation>
    </message>
</context>
<context>
    <name>PanelButton</name>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Preferences</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Menu key, while no icon is selected</source>
        <translation>Menütaste, solange kein Symbol gewählt ist</translation>
    </message>
</context>
<context>
    <name>PortalShortcut</name>
    <message>
        <source>Show or hide Ortu</source>
        <translation>Ortu ein- oder ausblenden</translation>
    </message>
</context>
<context>
    <name>PreferenceControls</name>
    <message>
        <source>Given for this run by --set.</source>
        <translation>Für diesen Lauf durch --set vorgegeben.</translation>
    </message>
    <message>
        <source>%1°</source>
        <translation>%1°</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1&#xa0;%</translation>
    </message>
    <message>
        <source>%1 s</source>
        <translation>%L1&#xa0;s</translation>
    </message>
</context>
<context>
    <name>PreferenceTabs</name>
    <message>
        <source>Group shown when the panel &amp;opens:</source>
        <translation>Beim Öffnen &amp;gezeigte Gruppe:</translation>
    </message>
    <message>
        <source>The one shown last</source>
        <translation>Die zuletzt gezeigte</translation>
    </message>
    <message>
        <source>Running</source>
        <translation>Laufend</translation>
    </message>
    <message>
        <source>Included</source>
        <translation>Eingeschlossen</translation>
    </message>
    <message>
        <source>Excluded</source>
        <translation>Ausgeschlossen</translation>
    </message>
    <message>
        <source>All</source>
        <translation>Alle</translation>
    </message>
    <message>
        <source>Favorites</source>
        <translation>Favoriten</translation>
    </message>
    <message>
        <source>Start Ortu at &amp;login</source>
        <translation>Ortu bei der Anmeldung &amp;starten</translation>
    </message>
    <message>
        <source>Show the &amp;panel when Ortu starts</source>
        <translation>Fenster beim Sta&amp;rt von Ortu zeigen</translation>
    </message>
    <message>
        <source>Show the panel when&amp;ever Ortu becomes active</source>
        <translation>Fenster &amp;zeigen, sobald Ortu aktiv wird</translation>
    </message>
    <message>
        <source>&amp;Hide a moved panel as soon as Ortu is no longer active</source>
        <translation>Versc&amp;hobenes Fenster ausblenden, sobald Ortu nicht mehr aktiv ist</translation>
    </message>
    <message>
        <source>Keep the panel above other &amp;windows when they are used</source>
        <translation>Fenster vor anderen halten, auch wenn &amp;diese benutzt werden</translation>
    </message>
    <message>
        <source>&amp;Largest icon:</source>
        <translation>&amp;Größtes Symbol:</translation>
    </message>
    <message>
        <source>&amp;Margin of icons:</source>
        <translation>Rand der S&amp;ymbole:</translation>
    </message>
    <message>
        <source>Space &amp;between icons:</source>
        <translation>Abstand der &amp;Symbole:</translation>
    </message>
    <message>
        <source>Opacity of dimmed &amp;icons:</source>
        <translation>&amp;Deckkraft blasser Symbole:</translation>
    </message>
    <message>
        <source>&amp;Panel:</source>
        <translation>F&amp;enster:</translation>
    </message>
    <message>
        <source>Colour of the Panel</source>
        <translation>Farbe des Fensters</translation>
    </message>
    <message>
        <source>&amp;Opacity of the panel:</source>
        <translation>Dec&amp;kkraft des Fensters:</translation>
    </message>
    <message>
        <source>Draw a bo&amp;rder round the panel</source>
        <translation>Rahmen um das Fenster zei&amp;chnen</translation>
    </message>
    <message>
        <source>Bord&amp;er:</source>
        <translation>Rah&amp;men:</translation>
    </message>
    <message>
        <source>Colour of the Border</source>
        <translation>Farbe des Rahmens</translation>
    </message>
    <message>
        <source>Fill the &amp;cells of running applications</source>
        <translation>Felder &amp;laufender Anwendungen füllen</translation>
    </message>
    <message>
        <source>Ou&amp;tline the cells of running applications</source>
        <translation>Felder laufender Anwendungen um&amp;randen</translation>
    </message>
    <message>
        <source>&amp;Highlight:</source>
        <translation>&amp;Hervorhebung:</translation>
    </message>
    <message>
        <source>Colour of Running Applications</source>
        <translation>Farbe laufender Anwendungen</translation>
    </message>
    <message>
        <source>Mar&amp;k new applications until they are started</source>
        <translation>Neue Anwendungen markieren, bis sie ges&amp;tartet werden</translation>
    </message>
    <message>
        <source>Order of &amp;icons:</source>
        <translation>&amp;Reihenfolge der Symbole:</translation>
    </message>
    <message>
        <source>By folder</source>
        <translation>Nach Ordner</translation>
    </message>
    <message>
        <source>By name</source>
        <translation>Nach Name</translation>
    </message>
    <message>
        <source>By colour</source>
        <translation>Nach Farbe</translation>
    </message>
    <message>
        <source>Options of the Order by &amp;Colour…</source>
        <translation>Optionen der R&amp;eihenfolge nach Farbe&#xa0;…</translation>
    </message>
    <message>
        <source>&amp;Running applications in the order they were started</source>
        <translation>&amp;Laufende Anwendungen in der Reihenfolge ihres Starts</translation>
    </message>
    <message>
        <source>&amp;Bunches:</source>
        <translation>Te&amp;ilgruppen:</translation>
    </message>
    <message>
        <source>None, one list</source>
        <translation>Keine, eine Liste</translation>
    </message>
    <message>
        <source>One below the other</source>
        <translation>Untereinander</translation>
    </message>
    <message>
        <source>Side by side</source>
        <translation>Nebeneinander</translation>
    </message>
    <message>
        <source>Icons follo&amp;w each other:</source>
        <translation>Symbole folgen einan&amp;der:</translation>
    </message>
    <message>
        <source>Across, then down</source>
        <translation>Erst nach rechts, dann nach unten</translation>
    </message>
    <message>
        <source>Down, then across</source>
        <translation>Erst nach unten, dann nach rechts</translation>
    </message>
    <message>
        <source>&amp;Leave as few cells empty as possible</source>
        <translation>Mögli&amp;chst wenige Felder leer lassen</translation>
    </message>
    <message>
        <source>Applications are looked for in these folders, and in what is below them.</source>
        <translation>Anwendungen werden in diesen Ordnern und ihren Unterordnern gesucht.</translation>
    </message>
    <message>
        <source>Look into each folder to a d&amp;epth of</source>
        <translation>In jedem Ordner suchen bis zur &amp;Tiefe von</translation>
    </message>
    <message>
        <source>levels</source>
        <translation>Ebenen</translation>
    </message>
    <message>
        <source>Hot &amp;key:</source>
        <translation>Tasten&amp;kürzel:</translation>
    </message>
    <message>
        <source>Show Ortu among the &amp;status icons</source>
        <translation>Ortu bei den &amp;Statussymbolen zeigen</translation>
    </message>
    <message>
        <source>A &amp;click on that icon shows the panel, not the menu</source>
        <translation>Ein Kli&amp;ck auf dieses Symbol zeigt das Fenster statt des Menüs</translation>
    </message>
    <message>
        <source>List Ortu in the &amp;task bar</source>
        <translation>Ortu in der &amp;Taskleiste zeigen</translation>
    </message>
    <message>
        <source>Screen &amp;edge or corner:</source>
        <translation>Bildschirm&amp;rand oder -ecke:</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Keine</translation>
    </message>
    <message>
        <source>Top left corner</source>
        <translation>Ecke oben links</translation>
    </message>
    <message>
        <source>Left edge</source>
        <translation>Linker Rand</translation>
    </message>
    <message>
        <source>Bottom left corner</source>
        <translation>Ecke unten links</translation>
    </message>
    <message>
        <source>Bottom edge</source>
        <translation>Unterer Rand</translation>
    </message>
    <message>
        <source>Bottom right corner</source>
        <translation>Ecke unten rechts</translation>
    </message>
    <message>
        <source>Right edge</source>
        <translation>Rechter Rand</translation>
    </message>
    <message>
        <source>Top right corner</source>
        <translation>Ecke oben rechts</translation>
    </message>
    <message>
        <source>De&amp;lay there:</source>
        <translation>Ver&amp;zögerung dort:</translation>
    </message>
    <message>
        <source>Sho&amp;w the edge or corner while the pointer is there</source>
        <translation>Rand oder Ecke &amp;hervorheben, solange der Zeiger dort ist</translation>
    </message>
    <message>
        <source>A dragged icon &amp;opens a group after:</source>
        <translation>&amp;Gezogenes Symbol öffnet eine Gruppe nach:</translation>
    </message>
    <message>
        <source>&amp;Turn the wheel the other way round</source>
        <translation>&amp;Mausrad umkehren</translation>
    </message>
    <message>
        <source>Change the panel&apos;s size in &amp;steps</source>
        <translation>Größe des Fensters &amp;schrittweise ändern</translation>
    </message>
    <message>
        <source>Keep names away from the hand on a ta&amp;blet</source>
        <translation>Auf einem &amp;Tablet Namen nicht unter der Hand zeigen</translation>
    </message>
    <message>
        <source>The &amp;hand is the:</source>
        <translation>&amp;Hand:</translation>
    </message>
    <message>
        <source>Left</source>
        <translation>Linke</translation>
    </message>
    <message>
        <source>Right</source>
        <translation>Rechte</translation>
    </message>
    <message>
        <source>Warn at the start when onl&amp;y the hot key shows the panel</source>
        <translation>Beim Start warnen, wenn nur das Tasten&amp;kürzel das Fenster zeigt</translation>
    </message>
    <message>
        <source>Warn at the start when nothing shows the &amp;panel</source>
        <translation>Beim Start warnen, wenn n&amp;ichts das Fenster zeigt</translation>
    </message>
    <message>
        <source>Loo&amp;k for new versions once a day</source>
        <translation>Einmal &amp;täglich nach neuen Versionen suchen</translation>
    </message>
    <message>
        <source>&amp;Typing finds by keywords, kinds, commands and actions as well as by names</source>
        <translation>Beim Ti&amp;ppen außer Namen auch Stichwörter, Art, Befehle und Aktionen durchsuchen</translation>
    </message>
    <message>
        <source>What is started &amp;most often is found first</source>
        <translation>&amp;Meistgestartetes zuerst finden</translation>
    </message>
    <message>
        <source>&amp;Clear What Was Started</source>
        <translation>Gestartetes &amp;löschen</translation>
    </message>
    <message>
        <source>Favorites, exclusions and preferences:</source>
        <translation>Favoriten, Ausschlüsse und Einstellungen:</translation>
    </message>
    <message>
        <source>&amp;Show the colours in a bar beside the groups</source>
        <translation>Farben in einer Leiste neben den Gruppen &amp;zeigen</translation>
    </message>
</context>
<context>
    <name>PreferencesWindow</name>
    <message>
        <source>Preferences of Ortu</source>
        <translation>Einstellungen von Ortu</translation>
    </message>
    <message>
        <source>&amp;Defaults of This Tab</source>
        <translation>&amp;Vorgaben dieser Seite</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>&amp;Quit Ortu</source>
        <translation>Ortu &amp;beenden</translation>
    </message>
    <message>
        <source>Ge&amp;neral</source>
        <translation>Allgemei&amp;n</translation>
    </message>
    <message>
        <source>&amp;Appearance</source>
        <translation>&amp;Aussehen</translation>
    </message>
    <message>
        <source>Gro&amp;ups and Order</source>
        <translation>Gr&amp;uppen und Ordnung</translation>
    </message>
    <message>
        <source>&amp;Folders</source>
        <translation>&amp;Ordner</translation>
    </message>
    <message>
        <source>Tri&amp;ggers</source>
        <translation>Au&amp;frufen</translation>
    </message>
    <message>
        <source>Ad&amp;vanced</source>
        <translation>Er&amp;weitert</translation>
    </message>
    <message>
        <source>Changes are not kept: %1.</source>
        <translation>Änderungen bleiben nicht erhalten: %1.</translation>
    </message>
</context>
<context>
    <name>ProgramDocuments</name>
    <message>
        <source>Welcome to Ortu</source>
        <translation>Willkommen bei Ortu</translation>
    </message>
</context>
<context>
    <name>Reason</name>
    <message>
        <source>the damaged file cannot be moved away</source>
        <translation>Die beschädigte Datei lässt sich nicht beiseitelegen</translation>
    </message>
    <message>
        <source>the desktop has not answered yet</source>
        <translation>Der Desktop hat noch nicht geantwortet</translation>
    </message>
    <message>
        <source>the desktop no longer offers such keys</source>
        <translation>Der Desktop bietet solche Tasten nicht mehr an</translation>
    </message>
    <message>
        <source>Wayland gives no program such a key</source>
        <translation>Wayland gibt keinem Programm eine solche Taste</translation>
    </message>
    <message>
        <source>the desktop&apos;s answer makes no sense</source>
        <translation>Die Antwort des Desktops ist unverständlich</translation>
    </message>
    <message>
        <source>the desktop has assigned no key</source>
        <translation>Der Desktop hat keine Taste zugewiesen</translation>
    </message>
    <message>
        <source>the desktop has taken the key back</source>
        <translation>Der Desktop hat die Taste zurückgenommen</translation>
    </message>
    <message>
        <source>the request for it was cancelled</source>
        <translation>Die Anfrage wurde abgebrochen</translation>
    </message>
    <message>
        <source>the desktop refuses it</source>
        <translation>Der Desktop lehnt es ab</translation>
    </message>
    <message>
        <source>there is no X display</source>
        <translation>Es gibt keinen X-Bildschirm</translation>
    </message>
    <message>
        <source>this display does not name its keys</source>
        <translation>Dieser X-Server benennt seine Tasten nicht</translation>
    </message>
    <message>
        <source>this keyboard has no such key</source>
        <translation>Diese Tastatur hat keine solche Taste</translation>
    </message>
    <message>
        <source>another program holds this key</source>
        <translation>Ein anderes Programm hat diese Taste belegt</translation>
    </message>
    <message>
        <source>the display refuses this key</source>
        <translation>Der X-Server verweigert diese Taste</translation>
    </message>
    <message>
        <source>this desktop offers no hot keys</source>
        <translation>Dieser Desktop bietet keine Tastenkürzel</translation>
    </message>
    <message>
        <source>this desktop starts no programs at login</source>
        <translation>Dieser Desktop startet bei der Anmeldung keine Programme</translation>
    </message>
    <message>
        <source>no hot key is chosen</source>
        <translation>Es ist kein Tastenkürzel gewählt</translation>
    </message>
    <message>
        <source>the chosen key is not in the table of keys</source>
        <translation>Die gewählte Taste steht nicht in der Tastentabelle</translation>
    </message>
    <message>
        <source>the folder cannot be made</source>
        <translation>Der Ordner lässt sich nicht anlegen</translation>
    </message>
    <message>
        <source>another program holds it</source>
        <translation>Ein anderes Programm hält die Dateien gesperrt</translation>
    </message>
    <message>
        <source>not a regular file</source>
        <translation>Die Datei ist keine gewöhnliche</translation>
    </message>
    <message>
        <source>the value is no property list</source>
        <translation>Der Wert ist keine Eigenschaftsliste</translation>
    </message>
    <message>
        <source>too large</source>
        <translation>Die Datei würde zu groß</translation>
    </message>
    <message>
        <source>its corrected colour is none</source>
        <translation>die berichtigte Farbe ist keine</translation>
    </message>
    <message>
        <source>no such preference</source>
        <translation>es gibt keine solche Einstellung</translation>
    </message>
    <message>
        <source>the preference cannot have this value</source>
        <translation>die Einstellung kann diesen Wert nicht haben</translation>
    </message>
    <message>
        <source>this Ortu does not know it</source>
        <translation>dieses Ortu kennt es nicht</translation>
    </message>
    <message>
        <source>no settings that Ortu has exported</source>
        <translation>das sind keine von Ortu exportierten Einstellungen</translation>
    </message>
    <message>
        <source>a newer Ortu has exported them</source>
        <translation>ein neueres Ortu hat sie exportiert</translation>
    </message>
    <message>
        <source>Ortu itself keeps this file</source>
        <translation>Ortu selbst führt diese Datei</translation>
    </message>
    <message>
        <source>no such file</source>
        <translation>es gibt diese Datei nicht</translation>
    </message>
</context>
<context>
    <name>ScanFolderTable</name>
    <message>
        <source>Add folders</source>
        <translation>Ordner hinzufügen</translation>
    </message>
    <message>
        <source>Remove the selected folders</source>
        <translation>Ausgewählte Ordner entfernen</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <comment>what a button does, and its key</comment>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>Choose folders to scan</source>
        <translation>Zu durchsuchende Ordner wählen</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
</context>
<context>
    <name>SettingsAlerts</name>
    <message>
        <source>The settings cannot be exported.</source>
        <translation>Die Einstellungen können nicht exportiert werden.</translation>
    </message>
    <message>
        <source>The settings cannot be imported.</source>
        <translation>Die Einstellungen können nicht importiert werden.</translation>
    </message>
    <message>
        <source>Everything is as in the file already.</source>
        <translation>Alles ist schon so wie in der Datei.</translation>
    </message>
    <message>
        <source>The settings were imported.</source>
        <translation>Die Einstellungen wurden importiert.</translation>
    </message>
    <message>
        <source>Left out:</source>
        <translation>Ausgelassen:</translation>
    </message>
    <message>
        <source>What was before stays in %1, in files whose names end with “.before”. To go back, take that off their names.</source>
        <translation>Was vorher war, bleibt in %1 in Dateien, deren Namen auf „.before“ enden. Nehmen Sie das von den Namen weg, um zurückzukehren.</translation>
    </message>
</context>
<context>
    <name>SettingsButtons</name>
    <message>
        <source>E&amp;xport…</source>
        <translation>E&amp;xportieren&#xa0;…</translation>
    </message>
    <message>
        <source>&amp;Import…</source>
        <translation>Im&amp;portieren&#xa0;…</translation>
    </message>
    <message>
        <source>Export Settings</source>
        <translation>Einstellungen exportieren</translation>
    </message>
    <message>
        <source>Import Settings</source>
        <translation>Einstellungen importieren</translation>
    </message>
    <message>
        <source>Ortu Settings</source>
        <translation>Ortu-Einstellungen</translation>
    </message>
</context>
<context>
    <name>ShortcutSettings</name>
    <message>
        <source>In GNOME, add a shortcut with the command &quot;ortu --toggle&quot; under Settings &gt; Keyboard &gt; View and Customize Shortcuts &gt; Custom Shortcuts.</source>
        <translation>Legen Sie in GNOME unter Einstellungen &gt; Tastatur ein eigenes Tastenkürzel mit dem Befehl „ortu --toggle“ an.</translation>
    </message>
    <message>
        <source>In Plasma, choose &quot;Add Command&quot; under System Settings &gt; Shortcuts and enter &quot;ortu --toggle&quot;.</source>
        <translation>Wählen Sie in Plasma unter Systemeinstellungen &gt; Kurzbefehle „Befehl hinzufügen“ und geben Sie „ortu --toggle“ ein.</translation>
    </message>
    <message>
        <source>In Xfce, add the command &quot;ortu --toggle&quot; under Settings &gt; Keyboard &gt; Application Shortcuts.</source>
        <translation>Fügen Sie in Xfce unter Einstellungen &gt; Tastatur &gt; Tastenkürzel für Anwendungen den Befehl „ortu --toggle“ hinzu.</translation>
    </message>
    <message>
        <source>In Sway, add the line &quot;bindsym Ctrl+Tab exec ortu --toggle&quot; to ~/.config/sway/config.</source>
        <translation>Fügen Sie in Sway die Zeile „bindsym Ctrl+Tab exec ortu --toggle“ zu ~/.config/sway/config hinzu.</translation>
    </message>
    <message>
        <source>In Hyprland, add the line &quot;bind = CTRL, Tab, exec, ortu --toggle&quot; to ~/.config/hypr/hyprland.conf.</source>
        <translation>Fügen Sie in Hyprland die Zeile „bind = CTRL, Tab, exec, ortu --toggle“ zu ~/.config/hypr/hyprland.conf hinzu.</translation>
    </message>
    <message>
        <source>Bind the command &quot;ortu --toggle&quot; to a key in the keyboard settings of your desktop.</source>
        <translation>Legen Sie den Befehl „ortu --toggle“ in den Tastatureinstellungen Ihres Desktops auf eine Taste.</translation>
    </message>
</context>
<context>
    <name>StatsButtons</name>
    <message>
        <source>%1 Total</source>
        <translation>%1 Gesamt</translation>
    </message>
    <message>
        <source>%1 T</source>
        <translation>%1 G</translation>
    </message>
    <message>
        <source>T</source>
        <translation>G</translation>
    </message>
    <message>
        <source>%1 Included</source>
        <translation>%1 Eingeschlossen</translation>
    </message>
    <message>
        <source>%1 I</source>
        <translation>%1 E</translation>
    </message>
    <message>
        <source>I</source>
        <translation>E</translation>
    </message>
    <message>
        <source>%1 Excluded</source>
        <translation>%1 Ausgeschlossen</translation>
    </message>
    <message>
        <source>%1 E</source>
        <translation>%1 A</translation>
    </message>
    <message>
        <source>E</source>
        <translation>A</translation>
    </message>
    <message numerus="yes">
        <source>%n Favorite</source>
        <translation>
            <numerusform>%n Favorit</numerusform>
            <numerusform>%n Favoriten</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 F</source>
        <translation>%1 F</translation>
    </message>
    <message>
        <source>F</source>
        <translation>F</translation>
    </message>
    <message>
        <source>%1 Running</source>
        <translation>%1 Laufend</translation>
    </message>
    <message>
        <source>%1 R</source>
        <translation>%1 L</translation>
    </message>
    <message>
        <source>R</source>
        <translation>L</translation>
    </message>
</context>
<context>
    <name>Triggers</name>
    <message>
        <source>%1 does not summon Ortu: %2.</source>
        <translation>%1 ruft Ortu nicht auf: %2.</translation>
    </message>
    <message>
        <source>The hot key</source>
        <translation>Das Tastenkürzel</translation>
    </message>
</context>
<context>
    <name>TypingChoice</name>
    <message>
        <source>by its n&amp;ame</source>
        <translation>nach dem &amp;Namen</translation>
    </message>
    <message>
        <source>b&amp;y anything: what it is for, its command, what it can do</source>
        <translation>nach &amp;allem: Zweck, Befehl und was sie können</translation>
    </message>
    <message>
        <source>How shall typing find an application?</source>
        <translation>Wonach soll Tippen Anwendungen finden?</translation>
    </message>
</context>
<context>
    <name>UpdateWindow</name>
    <message>
        <source>&amp;Look for new versions once a day</source>
        <translation>Einmal &amp;täglich nach neuen Versionen suchen</translation>
    </message>
    <message>
        <source>%1 %2 is available</source>
        <translation>%1 %2 ist verfügbar</translation>
    </message>
    <message>
        <source>This is version %1.</source>
        <translation>Dies ist Version %1.</translation>
    </message>
    <message>
        <source>&amp;What is new:</source>
        <translation>Was ist &amp;neu:</translation>
    </message>
    <message>
        <source>&amp;Skip This Version</source>
        <translation>Diese Version ü&amp;berspringen</translation>
    </message>
    <message>
        <source>&amp;Remind Me Later</source>
        <translation>&amp;Später erinnern</translation>
    </message>
    <message>
        <source>Show in &amp;Browser</source>
        <translation>Im Bro&amp;wser zeigen</translation>
    </message>
</context>
<context>
    <name>Updater</name>
    <message>
        <source>%1 %2 is available. “Check for Updates…” in the menu shows what is new.</source>
        <translation>%1 %2 ist verfügbar. „Nach Updates suchen&#xa0;…“ im Menü zeigt, was neu ist.</translation>
    </message>
    <message>
        <source>There is no newer version.</source>
        <translation>Es gibt keine neuere Version.</translation>
    </message>
    <message>
        <source>%1 %2 is the newest one.</source>
        <translation>%1 %2 ist die neueste.</translation>
    </message>
    <message>
        <source>Could not look for a newer version.</source>
        <translation>Die Suche nach einer neueren Version ist fehlgeschlagen.</translation>
    </message>
    <message>
        <source>Please check the connection to the internet, and try again later.</source>
        <translation>Bitte prüfen Sie Ihre Internetverbindung und versuchen Sie es später erneut.</translation>
    </message>
</context>
<context>
    <name>UserDefaults</name>
    <message>
        <source>Changes of the preferences are not kept: %1.</source>
        <translation>Änderungen der Einstellungen bleiben nicht erhalten: %1.</translation>
    </message>
</context>
</TS>
