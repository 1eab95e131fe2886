NAME          none
ROWS
 N  obj
 G  r1
 L  r2
 E  r3
COLUMNS
RHS
    RHS  r1  -2  r2  3
ENDATA
