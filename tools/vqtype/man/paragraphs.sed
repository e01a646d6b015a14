# Paragraphs that are indented in the help stand under their command's title; examples stay indented, and one line.
/^\.IP$/{
N
/\\f(CW/!s/^\.IP/.PP/
}
/\\f(CW\$ /{
s/\\f(CW/.nf\n&/
s/$/\n.fi/
}
# A command's title stands without the colon that marks it in the help.
/^\.SS /s/:\("\{0,1\}\)$/\1/
