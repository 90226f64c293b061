<?xml version="1.0" encoding="UTF-8"?>
<!--
  How Brackwell's directory display writes HTML. Change it as you like; the program reads it anew for every display.

  It is given <directory_display path="..."> with a <folder> in it. Each <folder> holds its sub-folders, then its
  <file>s. The properties are attributes: those that were chosen, in the chosen order, "date_created" for "Date
  Created". Without folder data a <folder> has none.

  One table: for each folder a group of rows, its own first, then its files. Plain cells keep a page of a hundred
  thousand rows small; how a column looks is said once, in the style sheet at the top.
-->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <!-- In this encoding all other characters are written by their numbers and read right anywhere. -->
  <xsl:output method="html" encoding="US-ASCII" doctype-system="about:legacy-compat" indent="no"/>

  <!-- The end of a coloured row that has fewer columns than the other kind has. -->
  <xsl:variable name="more-of-files"
                select="count(/*/descendant::file[1]/@*) - count(/*/folder/@*)"/>
  <xsl:variable name="folder-rest">
    <xsl:if test="$more-of-files &gt; 0"><td colspan="{$more-of-files}"/></xsl:if>
  </xsl:variable>
  <xsl:variable name="file-rest">
    <xsl:if test="$more-of-files &lt; 0"><td colspan="{-$more-of-files}"/></xsl:if>
  </xsl:variable>

  <xsl:template match="/directory_display">
    <html>
      <head>
        <title>Directory of <xsl:value-of select="@path"/></title>
        <meta name="viewport" content="width=device-width, initial-scale=1"/>
        <style>
:root { color-scheme: light dark; --page: #fff; --text: #1d2733; --quiet: #5b6877; --line: #dde3ea;
  --folder: #eaf1f9; --head: #24476b; --head-text: #fff; --path-width: 12em; }
@media (prefers-color-scheme: dark) {
  :root { --page: #161b21; --text: #dfe6ee; --quiet: #93a1b1; --line: #2c3640; --folder: #1f2b38;
    --head: #0f2a45; --head-text: #e6eef7; }
}
body { margin: 0; padding: 1.5em; background: var(--page); color: var(--text);
  font: 14px/1.45 system-ui, "Segoe UI", "DejaVu Sans", sans-serif; }
h1 { margin: 0; font-size: 1.35em; font-weight: 600; white-space: pre-wrap; overflow-wrap: anywhere; }
p { margin: .2em 0 1.2em; color: var(--quiet); }
table { border-collapse: collapse; min-width: 100%; }
th, td { padding: .25em .8em; text-align: left; vertical-align: top; white-space: pre-wrap; overflow-wrap: break-word; }
thead { position: sticky; top: 0; }
thead th, thead td { background: var(--head); color: var(--head-text); font-weight: 600; white-space: nowrap; }
thead tr:first-child th { padding-top: .5em; }
thead tr:last-child th { padding-bottom: .5em; }
tbody tr { border-bottom: 1px solid var(--line); }
tbody .folder { background: var(--folder); }
tbody .folder :first-child { font-weight: 600; }
tbody :first-child:not(tr) { padding-left: calc(.8em + min(var(--level), 24) * 1.1em); white-space: nowrap; }
tbody tr:not(.folder) :first-child { padding-left: calc(1.9em + min(var(--level), 24) * 1.1em); color: var(--quiet); }
thead tr:not(.folder) :first-child { padding-left: 1.9em; }
@media print {
  :root { --page: #fff; --text: #000; --quiet: #444; --line: #bbb; --folder: #eee; --head: #fff; --head-text: #000;
    --path-width: 0; }
  body { padding: 0; font-size: 9pt; }
  thead { position: static; }
  thead tr:last-child { border-bottom: 2px solid #000; }
  tr { break-inside: avoid; }
}
<xsl:for-each select="folder/@*">
  <xsl:call-template name="column-style"><xsl:with-param name="row" select="'.folder'"/></xsl:call-template>
</xsl:for-each>
<xsl:for-each select="descendant::file[1]/@*">
  <xsl:call-template name="column-style"><xsl:with-param name="row" select="'tr:not(.folder)'"/></xsl:call-template>
</xsl:for-each>
        </style>
      </head>
      <body>
        <h1>Directory of <xsl:value-of select="@path"/></h1>
        <p>
          <xsl:call-template name="count">
            <xsl:with-param name="number" select="count(descendant::folder)"/><xsl:with-param name="thing" select="'folder'"/>
          </xsl:call-template>
          <xsl:text>, </xsl:text>
          <xsl:call-template name="count">
            <xsl:with-param name="number" select="count(descendant::file)"/><xsl:with-param name="thing" select="'file'"/>
          </xsl:call-template>
        </p>
        <table>
          <thead>
            <xsl:for-each select="folder[@*]">
              <tr class="folder">
                <th scope="col">Folder</th><xsl:call-template name="headings"/><xsl:copy-of select="$folder-rest"/>
              </tr>
            </xsl:for-each>
            <xsl:for-each select="descendant::file[1]">
              <tr>
                <th scope="col">File</th><xsl:call-template name="headings"/><xsl:copy-of select="$file-rest"/>
              </tr>
            </xsl:for-each>
          </thead>
          <xsl:for-each select="descendant::folder[@* or file]">
            <xsl:text>&#10;</xsl:text>
            <tbody style="--level:{count(ancestor::folder)}">
              <xsl:if test="@*">
                <tr class="folder"><th scope="rowgroup">Folder</th><xsl:for-each select="@*"><td><xsl:value-of select="."/></td></xsl:for-each><xsl:copy-of select="$folder-rest"/></tr>
              </xsl:if>
              <xsl:for-each select="file">
                <xsl:text>&#10;</xsl:text>
                <tr><td>File</td><xsl:for-each select="@*"><td><xsl:value-of select="."/></td></xsl:for-each></tr>
              </xsl:for-each>
            </tbody>
          </xsl:for-each>
        </table>
      </body>
    </html>
  </xsl:template>

  <!-- Numbers are right-aligned; they and dates stay on one line; names and paths may break anywhere, but not
       after every few letters on a small screen. -->
  <xsl:template name="column-style">
    <xsl:param name="row"/>
    <xsl:choose>
      <xsl:when test="name() = 'size' or name() = 'attributes' or contains(name(), '_quantity')">
        <xsl:value-of select="concat($row, ' :nth-child(', position() + 1, ') { text-align: right; white-space: nowrap; font-variant-numeric: tabular-nums; }&#10;')"/>
      </xsl:when>
      <xsl:when test="contains(name(), 'name') or contains(name(), 'path') or name() = 'parent_folder'">
        <xsl:value-of select="concat($row, ' :nth-child(', position() + 1, ') { overflow-wrap: anywhere; min-width: var(--path-width); }&#10;')"/>
      </xsl:when>
      <xsl:when test="starts-with(name(), 'date_') or name() = 'is_root' or name() = 'extension'">
        <xsl:value-of select="concat($row, ' :nth-child(', position() + 1, ') { white-space: nowrap; }&#10;')"/>
      </xsl:when>
    </xsl:choose>
  </xsl:template>

  <xsl:template name="count">
    <xsl:param name="number"/>
    <xsl:param name="thing"/>
    <xsl:value-of select="concat($number, ' ', $thing)"/>
    <xsl:if test="$number != 1">s</xsl:if>
  </xsl:template>

  <xsl:template name="headings">
    <xsl:for-each select="@*">
      <th scope="col">
        <xsl:call-template name="heading">
          <xsl:with-param name="words" select="translate(name(), '_', ' ')"/>
        </xsl:call-template>
      </th>
    </xsl:for-each>
  </xsl:template>

  <!-- "date created" as "Date Created" -->
  <xsl:template name="heading">
    <xsl:param name="words"/>
    <xsl:variable name="word" select="substring-before(concat($words, ' '), ' ')"/>
    <xsl:variable name="rest" select="substring-after($words, ' ')"/>
    <xsl:value-of select="translate(substring($word, 1, 1), 'abcdefghijklmnopqrstuvwxyz', 'ABCDEFGHIJKLMNOPQRSTUVWXYZ')"/>
    <xsl:value-of select="substring($word, 2)"/>
    <xsl:if test="$rest != ''">
      <xsl:text> </xsl:text>
      <xsl:call-template name="heading">
        <xsl:with-param name="words" select="$rest"/>
      </xsl:call-template>
    </xsl:if>
  </xsl:template>
</xsl:stylesheet>
