<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="en">
<context>
    <name>corkwheel::MenuBarView</name>
    <message numerus="yes">
        <source>%Ln panel(s)</source>
        <translation>
            <numerusform>%Ln panel</numerusform>
            <numerusform>%Ln panels</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>corkwheel::StatsLayout</name>
    <message numerus="yes">
        <source>+%n more disk(s)</source>
        <translation>
            <numerusform>+%n more disk</numerusform>
            <numerusform>+%n more disks</numerusform>
        </translation>
    </message>
</context>
</TS>
