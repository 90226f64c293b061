<?xml version="1.0" encoding="UTF-8"?>
<!--
  How Brackwell's directory display writes text. Change it as you like; the program reads it anew for every display.

  It is given <directory_display path="..."> with a <folder> in it. Each <folder> holds its sub-folders, then its
  <file>s. The properties are attributes: those that were chosen, in the chosen order, "date_created" for "Date
  Created". Without folder data a <folder> has none.

  DELIM-TBD stands between two fields; the program puts the chosen separator there.
-->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:output method="text"/>

  <!-- Ends a line. The program sets it to what is usual on the system. -->
  <xsl:param name="line-end" select="'&#10;'"/>

  <!-- Two for each level of folders; beyond fifty levels the lines move in no further. -->
  <xsl:variable name="blanks" select="'                                                                                                    '"/>

  <xsl:template match="/directory_display">
    <xsl:value-of select="concat('Directory of ', @path, $line-end, $line-end)"/>
    <xsl:for-each select="folder[@*]">
      <xsl:text>Folder</xsl:text>
      <xsl:call-template name="headings"/>
    </xsl:for-each>
    <xsl:for-each select="descendant::file[1]">
      <xsl:text>  File</xsl:text>
      <xsl:call-template name="headings"/>
    </xsl:for-each>
    <xsl:for-each select="descendant::folder">
      <xsl:variable name="indent" select="substring($blanks, 1, 2 * count(ancestor::folder))"/>
      <xsl:if test="@*">
        <xsl:value-of select="concat($indent, 'Folder')"/>
        <xsl:for-each select="@*">
          <xsl:text>DELIM-TBD</xsl:text>
          <xsl:value-of select="."/>
        </xsl:for-each>
        <xsl:value-of select="$line-end"/>
      </xsl:if>
      <xsl:for-each select="file">
        <xsl:value-of select="$indent"/>
        <xsl:text>  File</xsl:text>
        <xsl:for-each select="@*">
          <xsl:text>DELIM-TBD</xsl:text>
          <xsl:value-of select="."/>
        </xsl:for-each>
        <xsl:value-of select="$line-end"/>
      </xsl:for-each>
    </xsl:for-each>
  </xsl:template>

  <xsl:template name="headings">
    <xsl:for-each select="@*">
      <xsl:text>DELIM-TBD</xsl:text>
      <xsl:call-template name="heading">
        <xsl:with-param name="words" select="translate(name(), '_', ' ')"/>
      </xsl:call-template>
    </xsl:for-each>
    <xsl:value-of select="$line-end"/>
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
