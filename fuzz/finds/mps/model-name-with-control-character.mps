NAME          twowords *\
ROWS
 N  obj
 L  c1
COLUMNS
    x  obj  1  c1  1
RHS
    RHS  c1  4
ENDATA
