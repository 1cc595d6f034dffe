<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="eo" sourcelanguage="en">
<context>
    <name>velquarin::FooterSection</name>
    <message>
        <source>Refresh</source>
        <translation>Aktualigi</translation>
    </message>
</context>
</TS>
