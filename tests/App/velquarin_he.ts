<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="he" sourcelanguage="en">
<context>
    <name>velquarin::FooterSection</name>
    <message>
        <source>Refresh</source>
        <translation>רענון</translation>
    </message>
</context>
</TS>
