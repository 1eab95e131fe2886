 * The second row of type N is the objective, and some comments start behind a blank.
NAME          objective
OBJSENSE
    MAX
OBJNAME
    profit
ROWS
 * rows of type N
 N  weight
 N  profit
 L  wood
 L  labour
COLUMNS
    * chairs first
    chairs    weight              12   profit             30
    chairs    wood                 2   labour              4
    tables    weight              31   profit             70
    tables    wood                 5   labour              3
RHS
    RHS       profit             100   wood              300
    RHS       labour             240
BOUNDS
 * none of chairs
 UP BND       tables              40
ENDATA
