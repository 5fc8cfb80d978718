<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" sourcelanguage="en">
<context>
    <name>corkwheel::AddPanelButton</name>
    <message>
        <source>Add Panel</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corkwheel::AppOptionsPopover</name>
    <message>
        <source>Show Dock icon</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show menu bar item</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Start at login</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Appearance</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>At least one stays visible so you can always reach Settings.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>App Options</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corkwheel::AppearanceSection</name>
    <message>
        <source>Leading</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Center</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Trailing</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Appearance</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Font</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Size: %1 pt</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Text Color</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Background Color</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Alignment</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Text Shadow</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Glass Background</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Corner Radius: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Opacity</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Font size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Corner radius</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corkwheel::ApplicationBus</name>
    <message>
        <source>Corkwheel has no action &quot;%1&quot;</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corkwheel::ColorWell</name>
    <message>
        <source>%1, %2% opaque</source>
        <extracomment>How a screen reader describes a colour well: the colour&apos;s hex code and its opacity.</extracomment>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corkwheel::CommandLine</name>
    <message>
        <source>Open the settings window of the running Corkwheel, or start Corkwheel with it open.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Switch edit mode of the running Corkwheel on or off.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Hide all panels of the running Corkwheel, or show them again.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quit the running Corkwheel.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Small information panels on the desktop.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show this help and exit.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show the version and exit.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Usage: %1 [options]</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>unexpected argument &apos;%1&apos;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>give only one action at a time</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Corkwheel is not running</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corkwheel::EditorWindow</name>
    <message>
        <source>Corkwheel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Toolbar</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>App Options</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Dock icon and menu bar options</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Edit Mode</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Drag and resize panels directly on the desktop</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Hide All</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corkwheel::EmptyStatePlacard</name>
    <message>
        <source>No Panel Selected</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose a panel from the sidebar, or add a new one.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corkwheel::ExtraStatRows</name>
    <message>
        <source>Cores</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>unavailable</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Load</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Swap</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>none</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Temperature</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>no sensors</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fans</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>none found</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Battery</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>RPM</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 left</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 to full</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>charging</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>full</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>on AC</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corkwheel::Fans</name>
    <message>
        <source>GPU Fan</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fan %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corkwheel::GeneralSection</name>
    <message>
        <source>General</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Enabled</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Refresh every %1s</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Refresh interval</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corkwheel::InterfaceDisplayInfo</name>
    <message>
        <source>Wi-Fi</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ethernet</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corkwheel::MenuBarItem</name>
    <message>
        <source>Corkwheel</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corkwheel::MenuBarView</name>
    <message>
        <source>Settings…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Hide All Panels</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Edit Mode</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quit Corkwheel</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>%Ln panel(s)</source>
        <translation type="unfinished">
            <numerusform></numerusform>
        </translation>
    </message>
</context>
<context>
    <name>corkwheel::NetworkGraphView</name>
    <message>
        <source>%1 Mbps</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 Kbps</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 bps</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corkwheel::NetworkStatsSampler</name>
    <message>
        <source>No Network</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corkwheel::Panel</name>
    <message>
        <source>Hello, desktop.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Today is {date:EEEE, MMMM d}</source>
        <extracomment>A new text panel&apos;s text; keep the {date:...} token as it is.</extracomment>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corkwheel::PanelContentView</name>
    <message>
        <source>Resize the panel to see all disks</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corkwheel::PanelResizeHandle</name>
    <message>
        <source>Drag to resize this panel</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corkwheel::PanelRow</name>
    <message>
        <source>%1 enabled</source>
        <extracomment>The name a screen reader gives a panel&apos;s on/off switch in the sidebar.</extracomment>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corkwheel::PanelRunner</name>
    <message>
        <source>error: not a web address</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>error: not a web address: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>error: the web engine could not be loaded</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corkwheel::PanelStore</name>
    <message>
        <source>Clock</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>System Stats</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Uptime</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corkwheel::PanelTitleBar</name>
    <message>
        <source>Drag to move this panel</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corkwheel::PanelType</name>
    <message>
        <source>Shell Command</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File Content</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Text</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clock</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Image</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>System Stats</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Webpage</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corkwheel::PositionSection</name>
    <message>
        <source>Position &amp; Size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>X</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Y</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>W</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>H</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Position is measured from the top-left of your main display.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>X position</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Y position</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Width</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Height</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corkwheel::PreviewSection</name>
    <message>
        <source>Preview</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corkwheel::ShellCommand</name>
    <message>
        <source>error: cannot start %1: %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>error: cannot open a pipe</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>error: command timed out</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corkwheel::SidebarView</name>
    <message>
        <source>Panels</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Corkwheel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Delete</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corkwheel::SourceSection</name>
    <message>
        <source>Source</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Command</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File Path</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Template</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Use {date:FORMAT} tokens, e.g. {date:EEEE, MMMM d}</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Date Format</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Uses ICU date patterns, e.g. h:mm:ss a</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Path or URL</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Shows live CPU, memory, and disk usage. No configuration needed.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>URL</source>
        <extracomment>An example address, shown in the empty field.</extracomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reloads automatically at the refresh interval below.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>example.com</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corkwheel::StatRow</name>
    <message>
        <source>CPU</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Memory</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 / %2 GB</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 GB free</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cores</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corkwheel::StatsLayout</name>
    <message numerus="yes">
        <source>+%n more disk(s)</source>
        <translation type="unfinished">
            <numerusform></numerusform>
        </translation>
    </message>
</context>
<context>
    <name>corkwheel::StatsSection</name>
    <message>
        <source>Rows &amp; Warnings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Shown below memory, in this order.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Each Core</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Load Average</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Swap</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Temperatures</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fans</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Battery</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Past its threshold a row&apos;s bar and figure take the warning&apos;s colour.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>above %1%</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>CPU</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Memory</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Disks</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>above %1% used</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>above %1 °C</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>At each sensor&apos;s own maximum, where it has one</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>below %1%</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corkwheel::StepperLabel</name>
    <message>
        <source>Decrease %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Increase %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corkwheel::Temperatures</name>
    <message>
        <source>CPU</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>GPU</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>NVMe</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corkwheel::TextBody</name>
    <message>
        <source>Running…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>(no output)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>(empty file)</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corkwheel::TextFileReader</name>
    <message>
        <source>(file not found)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>error: file read timed out</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corkwheel::WarningRow</name>
    <message>
        <source>%1 warning threshold</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Warn on %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 warning color</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corkwheel::WebBody</name>
    <message>
        <source>No URL set</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
