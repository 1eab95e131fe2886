NAME          factory
OBJSENSE
    MAX
ROWS
 N  profit
 L  wood
 L  labour
COLUMNS
    chairs    profit    30             wood      2
    chairs    labour    4
    tables    profit    70             wood      5
    tables    labour    3
RHS
    RHS       wood      300            labour    240
BOUNDS
 UP BND       tables    40
ENDATA
